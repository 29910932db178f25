#include "text/background_writer.h"

#include <algorithm>
#include <exception>

namespace tv {
namespace {

// Between two rounds: of a hundred calculations a second only the last one of each rest reaches the disk.
constexpr std::chrono::milliseconds kRest{100};

int failure_of(const BackgroundWriter::Job& job) {
  try {
    return job();
  } catch (const std::exception&) {
    return kFileError;
  }
}

}  // namespace

BackgroundWriter::~BackgroundWriter() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void BackgroundWriter::post(const std::string& file, Job job) {
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(waiting_, [&](const auto& former) { return former.first == file; });
    waiting_.emplace_back(file, std::move(job));
    if (!thread_.joinable()) thread_ = std::thread([this] { work(); });
  }
  wake_.notify_all();
}

void BackgroundWriter::drain() {
  std::unique_lock lock(mutex_);
  if (waiting_.empty() && !writing_) return;
  ++drains_;
  wake_.notify_all();
  idle_.wait(lock, [this] { return waiting_.empty() && !writing_; });
  --drains_;
}

std::optional<BackgroundWriter::Failed> BackgroundWriter::take_failure() {
  const std::lock_guard lock(mutex_);
  return std::exchange(failed_, std::nullopt);
}

void BackgroundWriter::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    wake_.wait(lock, [this] { return !waiting_.empty() || ends_; });
    if (waiting_.empty()) return;
    writing_ = true;
    Waiting jobs = std::exchange(waiting_, {});
    lock.unlock();
    run(std::move(jobs));
    lock.lock();
    writing_ = false;
    idle_.notify_all();
    wake_.wait_for(lock, kRest, [this] { return ends_ || drains_ > 0; });
  }
}

void BackgroundWriter::run(Waiting jobs) {
  for (const auto& [file, job] : jobs) {
    const int failure = failure_of(job);
    const std::lock_guard lock(mutex_);
    if (failure && !failed_) failed_ = Failed{file, failure};
  }
}

}  // namespace tv
