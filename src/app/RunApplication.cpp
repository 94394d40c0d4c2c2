#include "app/RunApplication.h"

#include "app/AppDelegate.h"
#include "app/ViewController.h"

#include <cstdio>
#include <memory>

namespace orvane {

int runApplication(int argumentCount, char** arguments, const Deployment& deployment) {
    // Whoever watches standard output through a pipe sees each line when it is written.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);

    AppDelegate delegate;
    platform::applicationMain(argumentCount, arguments, deployment.windowTitle, delegate,
                              [&deployment] { return std::make_shared<ViewController>(deployment); });
    return 0;
}

} // namespace orvane
