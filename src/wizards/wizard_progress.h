// The progress a wizard's work loop reports, behind an interface so that
// the loop does not care who watches: the platform's indicator in the
// library, a recorder (that can also cancel) in the tests.
#pragma once

struct KorvelProgress;

namespace kodbc::wizards {

class WizardProgress {
public:
    virtual ~WizardProgress() = default;
    // The work is about to start; maximum is the number of steps expected.
    virtual void Start(long maximum) = 0;
    // Step value is done. True when the user asked to stop.
    virtual bool Step(long value) = 0;
    // The work has ended (also after a stop or an error).
    virtual void Finish() = 0;
};

// The platform's indicator over the active window (a window with
// "Abbrechen" on Windows, a bar on a terminal on Linux, Ctrl+C cancels),
// with the caption of string captionId.
class PlatformProgress final : public WizardProgress {
public:
    explicit PlatformProgress(int captionId) noexcept : captionId_(captionId) {}
    ~PlatformProgress() override { Finish(); }
    PlatformProgress(const PlatformProgress &) = delete;
    PlatformProgress &operator=(const PlatformProgress &) = delete;

    void Start(long maximum) override;
    bool Step(long value) override;
    void Finish() override;

private:
    int captionId_;
    KorvelProgress *progress_ = nullptr;
};

} // namespace kodbc::wizards
