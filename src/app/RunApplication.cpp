#include "app/RunApplication.h"

#include "app/AppDelegate.h"
#include "app/ViewController.h"

#include <memory>

namespace orvane {

int runApplication(int argumentCount, char** arguments, const Deployment& deployment) {
    AppDelegate delegate;
    platform::applicationMain(argumentCount, arguments, deployment.windowTitle, delegate,
                              [&deployment] { return std::make_shared<ViewController>(deployment); });
    return 0;
}

} // namespace orvane
