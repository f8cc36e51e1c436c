#pragma once

#include "platform/SystemInfo.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

/// The facts that it is told. The clock on the wall goes with virtual time.
class SystemInfo final : public platform::SystemInfo {
  public:
    explicit SystemInfo(const Clock& virtualClock) : clock(virtualClock) {}

    Version servicesVersion() const override { return services; }
    std::optional<Version> systemVersion() const override { return system; }
    std::string machineModel() const override { return model; }
    std::optional<std::string> machineIdentifier() const override { return identifier; }
    std::vector<std::string> languages() const override { return preferred; }
    std::optional<std::string> countryCode() const override { return country; }
    LocalTime localTime() const override;

    /// The services, and the system, are of that version.
    void setVersion(Version version) { services = version, system = version; }
    void setSystemVersion(std::optional<Version> version) { system = version; }
    void setMachineModel(std::string name) { model = std::move(name); }
    void setMachineIdentifier(std::optional<std::string> uuid) { identifier = std::move(uuid); }
    void setLanguages(std::vector<std::string> languages) { preferred = std::move(languages); }
    void setCountryCode(std::optional<std::string> code) { country = std::move(code); }

    /// It is that time now.
    void setLocalTime(LocalTime time);

  private:
    const Clock& clock;
    Version services{10, 15, 7};
    std::optional<Version> system = services;
    std::string model = "Mac0,0";
    std::optional<std::string> identifier = "00000000-0000-0000-0000-000000000000";
    std::vector<std::string> preferred{"en"};
    std::optional<std::string> country = "US";
    LocalTime shown{.year = 2026, .month = 1, .day = 2, .hour = 15, .minute = 4, .second = 5};
    std::int64_t shownAt = 0; ///< in nanoseconds of virtual time
};

} // namespace platform::memory
