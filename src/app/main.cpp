#include "app/RunApplication.h"
#include "config/Deployment.h"
#include "platform/ProcessStart.h"

int main(int argumentCount, char** arguments) {
    orvane::platform::prepareProcess();
    return orvane::runApplication(argumentCount, arguments, orvane::productDeployment());
}
