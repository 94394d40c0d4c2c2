#include "platform/ToolkitStart_linux.h"

#include "platform/StandardOutput.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QtGlobal>

namespace orvane::platform {

namespace {

constexpr const char* kPluginPath = "QT_PLUGIN_PATH";
constexpr const char* kSessionBusAddress = "DBUS_SESSION_BUS_ADDRESS";

/// What a user's session has and libdbus finds without the variable.
bool hasUserBus() {
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && QFileInfo::exists(folder + QStringLiteral("/bus"));
}

/// Qt ends the process itself after a message of that weight.
void printToolkitMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    printErrorLine(qFormatLogMessage(type, context, message).toStdString());
}

} // namespace

void printToolkitMessages() { qInstallMessageHandler(&printToolkitMessage); }

/// The application object adds the program's folder to the list of plugin folders, then takes out again what
/// was removed from the list before. Only a folder of the list can be removed, so the variable puts it there.
void ignorePluginsBesideProgram() {
    const QString folder = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
    const bool wasSet = qEnvironmentVariableIsSet(kPluginPath);
    const QByteArray before = qgetenv(kPluginPath);
    qputenv(kPluginPath, folder.toLocal8Bit());
    QCoreApplication::removeLibraryPath(folder);
    if (wasSet) {
        qputenv(kPluginPath, before);
    } else {
        qunsetenv(kPluginPath);
    }
}

NoSessionBusLaunch::NoSessionBusLaunch() {
    if (qEnvironmentVariableIsEmpty(kSessionBusAddress) && !hasUserBus()) {
        isAddressSet_ = qputenv(kSessionBusAddress, "disabled:");
    }
}

NoSessionBusLaunch::~NoSessionBusLaunch() {
    if (isAddressSet_) {
        qunsetenv(kSessionBusAddress);
    }
}

} // namespace orvane::platform
