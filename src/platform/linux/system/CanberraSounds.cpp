#include "platform/linux/system/CanberraSounds.h"

#include <QByteArray>
#include <algorithm>
#include <canberra.h>
#include <cmath>
#include <filesystem>

namespace platform::linux {

namespace {

std::string decibels(double volume) {
    // The library counts in decibels; -100 cannot be heard.
    const double level = volume <= 0 ? -100 : 20 * std::log10(std::min(volume, 1.0));
    // Written without the locale's decimal comma.
    return QByteArray::number(std::max(level, -100.0), 'f', 1).toStdString();
}

} // namespace

void CanberraSounds::ContextDeleter::operator()(ca_context* context) const {
    ca_context_destroy(context);
}

CanberraSounds::CanberraSounds(std::string soundFolder, std::string nameInMixer, Log& logger)
    : folder(std::move(soundFolder)), programName(std::move(nameInMixer)), log(logger) {}

CanberraSounds::~CanberraSounds() = default;

bool CanberraSounds::open() {
    if (context) return true;
    ca_context* made = nullptr;
    if (const int error = ca_context_create(&made); error != CA_SUCCESS) {
        report(error);
        return false;
    }
    context.reset(made);
    ca_context_change_props(made, CA_PROP_APPLICATION_NAME, programName.c_str(), nullptr);
    return true;
}

void CanberraSounds::play(std::string_view name, double volume) {
    if (!open()) return;
    ca_proplist* made = nullptr;
    if (ca_proplist_create(&made) != CA_SUCCESS) return;
    const std::unique_ptr<ca_proplist, int (*)(ca_proplist*)> sound(made, ca_proplist_destroy);
    std::string kind = CA_PROP_EVENT_ID;
    std::string what(name);
    for (const char* ending : {".oga", ".wav"}) {
        const std::string file = folder + "/" + std::string(name) + ending;
        std::error_code ignored;
        if (!std::filesystem::exists(file, ignored)) continue;
        kind = CA_PROP_MEDIA_FILENAME;
        what = file;
        break;
    }
    ca_proplist_sets(made, kind.c_str(), what.c_str());
    ca_proplist_sets(made, CA_PROP_CANBERRA_VOLUME, decibels(volume).c_str());
    ca_proplist_sets(made, CA_PROP_MEDIA_ROLE, "event");
    const auto finished = [](ca_context*, std::uint32_t, int error, void* sounds) {
        static_cast<CanberraSounds*>(sounds)->report(error);
    };
    report(ca_context_play_full(context.get(), 0, made, finished, this));
}

void CanberraSounds::report(int error) {
    switch (error) {
    case CA_SUCCESS:
    case CA_ERROR_NOTFOUND: // an unknown name is no fault
    case CA_ERROR_DISABLED: // neither are event sounds that the user has switched off
    case CA_ERROR_CANCELED:
    case CA_ERROR_DESTROYED:
        return;
    default:
        break;
    }
    if (reported.exchange(true)) return;
    log.write(std::string("sounds cannot be played: ") + ca_strerror(error) +
              "; a sound server such as PipeWire or PulseAudio must run, and libcanberra needs its "
              "module for it");
}

} // namespace platform::linux
