#pragma once

#include "app/DownloadDecision.h"
#include "app/LocalizedTexts.h"
#include "config/Deployment.h"
#include "download/EngineDownload.h"
#include "engine/EngineMessages.h"
#include "model/DescribedEngine.h"
#include "model/Presentation.h"
#include "platform/Application.h"
#include "platform/Controls.h"
#include "platform/SharedField.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

class EngineChecks;
class Logger;

namespace platform {
class Process;
}

/// The controller of the main window, and the owner of everything that one run knows. It lives until the
/// process ends.
///
/// Four kinds of thread meet here: the main thread, the decision task, the receiving loop and, through the
/// main queue, the download's session. Start-up, language, flow and presentation are its own; every other
/// operation hands what the run knows to a unit of its subsystem (app/EngineOperations.cpp).
class ViewController final : public platform::ViewControllerBase,
                             public Presentation,
                             public EngineDownloadHost,
                             public EngineMessagesHost,
                             public std::enable_shared_from_this<ViewController> {
public:
    /// `deployment` must outlive the controller.
    explicit ViewController(const Deployment& deployment);
    ~ViewController() override;

    // Start-up (app/ViewController.cpp), on the main thread.
    void connectOutlets(const platform::MainWindowControls& controls) override;
    void awakeFromNib() override;
    void viewDidLoad() override;
    void viewWillAppear() override;
    std::string quitCommandTitle() override;
    std::string languageTag() override { return localeName.load(); }

    // Language (app/LocaleChoice.cpp).
    void initializeLocale();
    std::string loadTranslatedString(std::int64_t stringID) const override;
    std::int64_t forMode(std::int64_t stringID) const override { return stringID + (uninstall ? 1 : 0); }

    // Flow (app/InstallerFlow.cpp): the first and last on the main thread, the others on the decision task.
    void viewDidAppear() override;
    DownloadDecision initializeDownloads();
    DownloadDecision tryUseExistingOrvane();
    void cancelButtonClicked() override;

    // Presentation (app/Presentation.cpp), from any thread: each hands its work to the main queue and returns
    // at once, but for the crash report that `showFatalErrorAndQuit` then sends from the calling thread.
    void showStep(const std::string& step) override;
    void showError(const std::string& err) override;
    void setProgression(std::int64_t pos) override;
    void setCancelButtonText(const std::string& text);
    void showFatalErrorAndQuit(const std::string& err) override;

    // Engine download (download/FileDescription.h, download/EngineDownload.h), on the decision task.

    /// Fetches and stores `orvaneDownloadInfo`; blocks up to the deployment's limit. False: the log says why.
    bool downloadFileInfo();

    /// Starts the download and returns. `completionHandler` is called at most once, on the main thread, when
    /// the engine lies verified and deciphered at its place; every failure ends in a fatal error instead.
    void downloadOrvane(std::function<void()> completionHandler);

    // Engine verification (verify/EngineChecks.h), on the decision task; the checksums also on the main
    // thread. They need `orvaneExeUrl` and `orvaneDownloadInfo`.
    bool orvaneMajorVersionMatches();
    bool orvaneVersionsMatch();
    bool orvaneChecksumsMatch() override;
    std::string getCurrentOrvaneVersion(); ///< throws `platform::Error`

    // Engine process and messages (engine/EngineLaunch.h, engine/EngineMessages.h).

    /// Starts the engine and returns; a failure ends in a fatal error. Main thread, decision task, receiving
    /// loop.
    void spawnOrvane() override;

    /// Acts on one engine message; on the receiving loop, which waits for the return.
    void onCopyData(std::int32_t msgType, const std::string& text);

    void writeProgramLog(const std::string& text) const; ///< if the run has a log already; any thread

    // What the units of the subsystems ask of the run; each interface says from which thread.
    Presentation& presentation() override { return *this; }
    void setOrvaneDownloadTask(std::shared_ptr<DownloadTask> task) override;
    void showDownloadProgress(double percentage) override;
    int decryptOrvane(const std::filesystem::path& encryptedFile) override;
    void setCancelButtonEnabled(bool enabled) override;
    void setLastOrvaneStep(std::int64_t step) override;
    void interruptOrvane() override;

    // The run state. What several threads touch is atomic or a shared field; each field names its writer.
    std::weak_ptr<platform::Button> cancelButton;
    std::weak_ptr<platform::TextField> textError;
    std::weak_ptr<platform::TextField> textStep;
    std::weak_ptr<platform::LevelIndicator> progressBar;
    std::string machPortName;  ///< `viewDidLoad`, before the loop starts
    std::int64_t machPort = 0; ///< likewise; negative: no messages will come
    SharedField<std::shared_ptr<DownloadTask>> orvaneDownloadTask;       ///< the download, while it runs
    std::atomic<bool> uninstall = false;                                 ///< `viewWillAppear`
    SharedField<std::optional<std::filesystem::path>> orvaneExeUrl;      ///< `initializeDownloads`
    SharedField<std::optional<FileDownloadInfo>> orvaneDownloadInfo;     ///< `downloadFileInfo`
    SharedField<std::shared_ptr<platform::Process>> orvaneProcessHandle; ///< `spawnOrvane`
    std::atomic<bool> isOrvaneEncrypted = false;                         ///< `initializeDownloads`
    SharedField<std::vector<std::string>> orvaneArguments;               ///< `viewWillAppear`
    std::atomic<std::int64_t> lastOrvaneStep = 0;                        ///< the receiving loop
    SharedField<std::string> localeName{"fr-CH"};                        ///< `initializeLocale`
    std::atomic<std::int64_t> languageOffset = language::kFrench;        ///< `initializeLocale`
    SharedField<std::shared_ptr<const LocalizedTexts>> localizedTexts;   ///< `initializeLocale`
    SharedField<std::shared_ptr<Logger>> logger; ///< `viewWillAppear`, before its log is opened

private:
    void applyStyle();
    void submitFatalAlert(const std::string& err);
    void displayWindowIfOnMainThread() const;
    void askForUninstallationConsent();
    void decide();
    std::filesystem::path orvaneUrl() const;    ///< its absence is a programming error
    FileDownloadInfo orvaneDescription() const; ///< likewise
    DescribedEngine describedEngine() const;
    EngineChecks engineChecks();

    const Deployment& deployment_;
    std::weak_ptr<platform::Layer> layer_;
    std::weak_ptr<platform::Window> window_;
    std::atomic<bool> isFatalErrorRaised_ = false;
};

} // namespace orvane
