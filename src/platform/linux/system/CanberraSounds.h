#pragma once

#include "platform/Log.h"
#include "platform/Sounds.h"

#include <atomic>
#include <memory>
#include <string>

struct ca_context;

namespace platform::linux {

/// Plays through the desktop's sound theme: a sound file of the bundle where there is one of that
/// name (.oga or .wav), else the theme's event of that name.
class CanberraSounds final : public Sounds {
  public:
    /// `folder` holds the bundle's sound files and need not exist. Nothing is opened before the
    /// first sound. `programName` is shown in the desktop's mixer.
    CanberraSounds(std::string folder, std::string programName, Log& log);
    ~CanberraSounds() override;

    void play(std::string_view name, double volume) override;

  private:
    struct ContextDeleter {
        void operator()(ca_context* context) const;
    };

    bool open();
    void report(int error);

    std::string folder;
    std::string programName;
    Log& log;
    std::atomic<bool> reported = false; ///< the sound library's thread reports as well
    std::unique_ptr<ca_context, ContextDeleter> context; ///< ends before what its thread uses
};

} // namespace platform::linux
