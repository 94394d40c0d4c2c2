#include "app/RunApplication.h"
#include "demo/RehearsalAuthorities.h"
#include "demo/RehearsalDeployment.h"
#include "platform/ProcessStart.h"

#include <cstdlib>
#include <iostream>

namespace {

constexpr int kUsageStatus = 64;
constexpr int kBadRehearsalStatus = 65;

} // namespace

/// The product in every respect but one: where its files lie and whom it talks to is read from a folder.
int main(int argumentCount, char** arguments) {
    orvane::platform::prepareProcess();
    const char* folder = std::getenv("ORVANE_REHEARSAL");
    if (folder == nullptr || *folder == '\0') {
        std::cerr << "OrvaneBootstrapRehearsal: ORVANE_REHEARSAL must name the rehearsal's folder\n";
        return kUsageStatus;
    }
    try {
        // Kept to the very end of the process: its threads read it until then.
        static const orvane::demo::Rehearsal rehearsal = orvane::demo::readRehearsal(folder);
        orvane::demo::trustAuthoritiesIn(rehearsal.certificateAuthority);
        return orvane::runApplication(argumentCount, arguments, rehearsal.deployment);
    } catch (const orvane::demo::RehearsalError& error) {
        std::cerr << "OrvaneBootstrapRehearsal: " << error.what() << "\n";
        return kBadRehearsalStatus;
    }
}
