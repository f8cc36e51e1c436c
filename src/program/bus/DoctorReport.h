#pragma once

#include "bus/ProductObject.h"
#include "platform/Descriptors.h"

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/// Runs palisor-doctor and collects what it prints, without waiting. Main thread.
class DoctorReport {
  public:
    using Done = std::function<void(const bus::ProductObject::Report&)>;

    /// `path` is the executable's. The loop must outlive the object.
    DoctorReport(std::string path, std::string product, platform::Descriptors& loop)
        : executable(std::move(path)), productName(std::move(product)), descriptors(loop) {}
    ~DoctorReport();
    DoctorReport(const DoctorReport&) = delete;
    DoctorReport& operator=(const DoctorReport&) = delete;

    /// `done` is called once: at once where it cannot be started, else from the run loop. Whoever
    /// asks while it runs gets the same report.
    void ask(Done done);

  private:
    int start();
    void read();
    void closeOutput();
    void awaitEnd();
    void end();
    void answer(const bus::ProductObject::Report& report);

    std::string executable, productName;
    platform::Descriptors& descriptors;
    std::vector<Done> waiting;
    std::string text;
    pid_t process = 0;
    int output = -1; ///< what it prints, and then what tells that it has ended
    bool isRunning = false;
};
