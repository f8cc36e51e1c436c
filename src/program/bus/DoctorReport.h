#pragma once

#include "bus/ProductObject.h"
#include "platform/Descriptors.h"

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/// Runs palisor-doctor and collects what it prints, without waiting. One that has not ended when
/// the time is over is ended, and there is no report; so is one that runs when the object goes.
/// Main thread.
class DoctorReport {
  public:
    using Done = std::function<void(const bus::ProductObject::Report&)>;

    /// `path` is the executable's. The loop must outlive the object.
    DoctorReport(std::string path, std::string product, platform::Descriptors& loop,
                 std::chrono::milliseconds time = std::chrono::seconds(10))
        : executable(std::move(path)),
          productName(std::move(product)),
          descriptors(loop),
          limit(time) {}
    ~DoctorReport();
    DoctorReport(const DoctorReport&) = delete;
    DoctorReport& operator=(const DoctorReport&) = delete;

    /// `done` is called once: at once where it cannot be started, else from the run loop. Whoever
    /// asks while it runs gets the same report.
    void ask(Done done);

  private:
    int start();
    void read();
    void setAlarm();
    void close(int& descriptor);
    void stop();
    void awaitEnd();
    void end();
    void answer(const bus::ProductObject::Report& report);

    std::string executable, productName;
    platform::Descriptors& descriptors;
    std::vector<Done> waiting;
    std::string text;
    std::chrono::milliseconds limit;
    pid_t process = 0;
    int output = -1; ///< what it prints, and then what tells that it has ended
    int alarm = -1;
    bool isRunning = false, isLate = false;
};
