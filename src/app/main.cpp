#include "app/RunApplication.h"
#include "config/Deployment.h"

int main(int argumentCount, char** arguments) {
    return orvane::runApplication(argumentCount, arguments, orvane::productDeployment());
}
