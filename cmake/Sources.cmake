# Which file belongs to which platform and to which half of it. The one place that says so.

set(ORVANE_PORTABLE_SOURCES
    src/app/AppDelegate.cpp
    src/app/EngineOperations.cpp
    src/app/InstallerFlow.cpp
    src/app/LocaleChoice.cpp
    src/app/LocalizedTexts.cpp
    src/app/Presentation.cpp
    src/app/RunApplication.cpp
    src/app/ViewController.cpp
    src/config/Deployment.cpp
    src/download/DownloadService.cpp
    src/download/EngineDownload.cpp
    src/download/FileDescription.cpp
    src/engine/EngineLaunch.cpp
    src/engine/EngineMessages.cpp
    src/engine/MachPort.cpp
    src/log/Base64.cpp
    src/log/CrashReport.cpp
    src/log/Logger.cpp
    src/model/DescribedEngine.cpp
    src/model/ExecutableBit.cpp
    src/model/FileDownloadInfo.cpp
    src/model/JsonMembers.cpp
    src/platform/AlertAnswer.cpp
    src/platform/BarProportion.cpp
    src/platform/BoundedRequest.cpp
    src/platform/CommandTitles.cpp
    src/platform/Controls.cpp
    src/platform/Digest.cpp
    src/platform/Error.cpp
    src/platform/PlainHttp.cpp
    src/platform/PreferredLanguages.cpp
    src/platform/Process.cpp
    src/platform/ProgrammingError.cpp
    src/platform/Url.cpp
    src/platform/Utf8.cpp
    src/platform/WindowUpdates.cpp
    src/verify/Crypto.cpp
    src/verify/EngineChecks.cpp
    src/verify/Shell.cpp
    src/verify/Versions.cpp)

# Facilities that POSIX answers alike on both platforms.
set(ORVANE_POSIX_SOURCES
    src/platform/Descriptor_posix.cpp
    src/platform/Files_posix.cpp
    src/platform/OwnedFile_posix.cpp
    src/platform/ProcessStart_posix.cpp
    src/platform/StandardOutput_posix.cpp)

# What the product answers where a test program may link an answer of its own.
set(ORVANE_PRODUCT_LINKAGE_SOURCES
    src/platform/NoPlainHttp.cpp)

set(ORVANE_SYSTEM_LINUX_SOURCES
    src/platform/Bundle_linux.cpp
    src/platform/CodeSignature_linux.cpp
    src/platform/Digest_linux.cpp
    src/platform/Error_linux.cpp
    src/platform/IgnoredSignal_linux.cpp
    src/platform/Locale_linux.cpp
    src/platform/MessagePort_linux.cpp
    src/platform/OpenSsl_linux.cpp
    src/platform/ProcessInfo_linux.cpp
    src/platform/Process_linux.cpp
    src/platform/UrlDataTask_linux.cpp
    src/platform/UrlSession_linux.cpp
    src/platform/UrlTransfer_linux.cpp
    src/platform/UrlWorker_linux.cpp)

set(ORVANE_DESKTOP_LINUX_SOURCES
    src/platform/Activity_linux.cpp
    src/platform/AlertIcon_linux.cpp
    src/platform/Alert_linux.cpp
    src/platform/Application_linux.cpp
    src/platform/Controls_linux.cpp
    src/platform/MainWindow_linux.cpp
    src/platform/Queue_linux.cpp
    src/platform/ToolkitStart_linux.cpp
    src/platform/WrappingText_linux.cpp)

# What the window carries for desktops that do not know its desktop entry.
set(ORVANE_WINDOW_ICONS
    16x16/apps/orvane-bootstrap.png
    24x24/apps/orvane-bootstrap.png
    32x32/apps/orvane-bootstrap.png
    48x48/apps/orvane-bootstrap.png
    64x64/apps/orvane-bootstrap.png
    128x128/apps/orvane-bootstrap.png)

set(ORVANE_SYSTEM_MAC_SOURCES
    src/platform/Bundle_mac.mm
    src/platform/CodeSignature_mac.cpp
    src/platform/Digest_mac.cpp
    src/platform/Error_mac.mm
    src/platform/Foundation_mac.mm
    src/platform/IgnoredSignal_mac.cpp
    src/platform/Locale_mac.mm
    src/platform/MessagePort_mac.cpp
    src/platform/ProcessInfo_mac.mm
    src/platform/Process_mac.mm
    src/platform/UrlSession_mac.mm)

set(ORVANE_DESKTOP_MAC_SOURCES
    src/platform/Activity_mac.mm
    src/platform/Alert_mac.mm
    src/platform/Application_mac.mm
    src/platform/Controls_mac.mm
    src/platform/MainMenu_mac.mm
    src/platform/ProgressBar_mac.mm
    src/platform/Queue_mac.mm
    src/platform/ScrollingText_mac.mm)

# What an engine takes into its own build to speak to the program; no part of the program.
set(ORVANE_ENGINE_SENDER_SOURCES
    sender/EngineMessageSender.cpp)
set(ORVANE_ENGINE_SENDER_LINUX_SOURCES
    sender/EngineMessageSender_linux.cpp)
set(ORVANE_ENGINE_SENDER_MAC_SOURCES
    sender/EngineMessageSender_mac.cpp)

# The conformance suite of the system half: the same tests on each platform, and what only one of them promises.
set(ORVANE_TRANSFER_CONFORMANCE_SOURCES
    tests/platform/BoundedRequestTest.cpp
    tests/platform/RecordingDelegate.cpp
    tests/platform/UrlSessionControlTest.cpp
    tests/platform/UrlSessionFaultsTest.cpp
    tests/platform/UrlSessionFixture.cpp
    tests/platform/UrlSessionHammerTest.cpp
    tests/platform/UrlSessionLifeTest.cpp
    tests/platform/UrlSessionTest.cpp)
set(ORVANE_CONFORMANCE_SOURCES
    ${ORVANE_TRANSFER_CONFORMANCE_SOURCES}
    tests/platform/DigestTest.cpp
    tests/platform/ErrorTest.cpp
    tests/platform/FileHandleTest.cpp
    tests/platform/FilesTest.cpp
    tests/platform/MessagePortFixture.cpp
    tests/platform/MessagePortHammerTest.cpp
    tests/platform/MessagePortTest.cpp
    tests/platform/OwnedFileTest.cpp
    tests/platform/ProcessFixture.cpp
    tests/platform/ProcessHammerTest.cpp
    tests/platform/ProcessInfoTest.cpp
    tests/platform/ProcessTest.cpp
    tests/platform/SharedFieldTest.cpp
    tests/platform/StandardOutputTest.cpp
    tests/platform/UrlTest.cpp
    tests/platform/Utf8Test.cpp)
set(ORVANE_CONFORMANCE_LINUX_SOURCES
    tests/platform/BundleTest_linux.cpp
    tests/platform/ErrorTest_linux.cpp
    tests/platform/FileHandleTest_linux.cpp
    tests/platform/HostileEnvironment_linux.cpp
    tests/platform/LocaleTest_linux.cpp
    tests/platform/MessagePortTest_linux.cpp
    tests/platform/PlatformErrors_linux.cpp
    tests/platform/ProcessInfoTest_linux.cpp
    tests/platform/ProcessTest_linux.cpp
    tests/platform/UrlSessionTest_linux.cpp
    tests/platform/UrlSessionTrustTest_linux.cpp)
set(ORVANE_CONFORMANCE_MAC_SOURCES
    tests/platform/BundleTest_mac.cpp
    tests/platform/LocaleTest_mac.cpp
    tests/platform/MessagePortTest_mac.cpp
    tests/platform/PlatformErrors_mac.mm
    tests/platform/ProcessInfoTest_mac.cpp
    tests/platform/QueueTest_mac.cpp
    tests/platform/SelfTestMain_mac.cpp)

# What the suite stands on: a server on loopback and a sender of messages, each with its twin. On Linux the other tests
# take them too, with the desktop and the authority that they have there.
set(ORVANE_TEST_SERVER_SOURCES
    tests/support/LoopbackServer.cpp
    tests/support/PlainListener.cpp)
set(ORVANE_TEST_SERVER_LINUX_SOURCES
    tests/support/LoopbackTransport_linux.cpp
    tests/support/TestAuthority.cpp
    tests/support/TlsTransport.cpp
    tests/support/TrustedTestAuthorities.cpp)
# No program may add a certificate authority on a Mac, so its tests use a server without TLS, which their linkage admits.
set(ORVANE_TEST_SERVER_PLAIN_SOURCES
    tests/support/LoopbackTransport_plain.cpp
    tests/support/PlainHttpOnLoopback.cpp)
set(ORVANE_TEST_SUPPORT_SOURCES
    tests/support/EnvironmentVariable.cpp
    tests/support/Sender.cpp
    tests/support/TemporaryFolder.cpp)
set(ORVANE_TEST_SUPPORT_LINUX_SOURCES
    tests/support/Sender_linux.cpp)
set(ORVANE_TEST_SUPPORT_MAC_SOURCES
    tests/support/Sender_mac.cpp)
