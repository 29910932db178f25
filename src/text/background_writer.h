// Files that follow the work: written by one thread behind it, so that nobody waits for a disk.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "text/failure.h"

namespace tv {

class BackgroundWriter {
public:
  using Job = std::function<int()>;  // writes one file; gives the failure number, 0 if all went well
  struct Failed {
    std::string file;
    int failure = kNoFailure;
  };

  BackgroundWriter() = default;
  BackgroundWriter(const BackgroundWriter&) = delete;
  BackgroundWriter& operator=(const BackgroundWriter&) = delete;
  ~BackgroundWriter();  // writes what is left

  // The job runs soon, in the writer's thread, with what it carries itself. A former job for the same file
  // that has not begun is dropped: the latest wins.
  void post(const std::string& file, Job job);
  // Returns when nothing is left to write. To be called before anything else reads or writes these files.
  void drain();
  // The first failure since the last call.
  std::optional<Failed> take_failure();

private:
  using Waiting = std::vector<std::pair<std::string, Job>>;
  void work();
  void run(Waiting jobs);

  std::mutex mutex_;
  std::condition_variable wake_, idle_;
  Waiting waiting_;
  bool writing_ = false, ends_ = false;
  int drains_ = 0;  // those who wait for the end of the work
  std::optional<Failed> failed_;
  std::thread thread_;  // begins with the first job
};

}  // namespace tv
