# Which file belongs to which platform and to which half of it. The one place that says so.

set(ORVANE_PORTABLE_SOURCES
    app/AppDelegate.cpp
    app/InstallerFlow.cpp
    app/LocaleChoice.cpp
    app/LocalizedTexts.cpp
    app/Presentation.cpp
    app/RunApplication.cpp
    app/ViewController.cpp
    config/Deployment.cpp
    download/DownloadService.cpp
    download/EngineDownload.cpp
    download/FileDescription.cpp
    download/FileDownloadInfo.cpp
    engine/EngineLaunch.cpp
    engine/EngineMessages.cpp
    engine/ExecutableBit.cpp
    engine/MachPort.cpp
    engine/MessageNumber.cpp
    log/Base64.cpp
    log/CrashReport.cpp
    log/Logger.cpp
    platform/BoundedRequest.cpp
    platform/Error.cpp
    platform/ProgrammingError.cpp
    platform/Url.cpp
    platform/Utf8.cpp
    verify/Crypto.cpp
    verify/EngineChecks.cpp
    verify/Shell.cpp
    verify/Versions.cpp)

# Facilities that POSIX answers alike on both platforms.
set(ORVANE_POSIX_SOURCES
    platform/Files_posix.cpp)

set(ORVANE_SYSTEM_LINUX_SOURCES
    platform/Bundle_linux.cpp
    platform/Digest_linux.cpp
    platform/Error_linux.cpp
    platform/Locale_linux.cpp
    platform/MessagePort_linux.cpp
    platform/OpenSsl_linux.cpp
    platform/ProcessInfo_linux.cpp
    platform/Process_linux.cpp
    platform/UrlDataTask_linux.cpp
    platform/UrlSession_linux.cpp
    platform/UrlTransfer_linux.cpp
    platform/UrlWorker_linux.cpp)

set(ORVANE_DESKTOP_LINUX_SOURCES
    platform/AlertIcon_linux.cpp
    platform/Alert_linux.cpp
    platform/Application_linux.cpp
    platform/Controls_linux.cpp
    platform/MainWindow_linux.cpp
    platform/Queue_linux.cpp
    platform/WrappingText_linux.cpp)

set(ORVANE_SYSTEM_MAC_SOURCES
    platform/Bundle_mac.mm
    platform/Digest_mac.cpp
    platform/Error_mac.mm
    platform/Foundation_mac.mm
    platform/Locale_mac.mm
    platform/MessagePort_mac.cpp
    platform/ProcessInfo_mac.mm
    platform/Process_mac.mm
    platform/UrlSession_mac.mm)

set(ORVANE_DESKTOP_MAC_SOURCES
    platform/Alert_mac.mm
    platform/Application_mac.mm
    platform/Controls_mac.mm
    platform/MainMenu_mac.mm
    platform/Queue_mac.mm)

# What an engine takes into its own build to speak to the program; no part of the program.
set(ORVANE_ENGINE_SENDER_SOURCES
    engine/EngineMessageSender.cpp)
set(ORVANE_ENGINE_SENDER_LINUX_SOURCES
    engine/EngineMessageSender_linux.cpp)
set(ORVANE_ENGINE_SENDER_MAC_SOURCES
    engine/EngineMessageSender_mac.cpp)
