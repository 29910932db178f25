// To be refused by the system as an ordinary user is: root, as whom tests may run, is forbidden nothing.
#pragma once

#include <unistd.h>

namespace tv_test {

class WithoutRights {
public:
  WithoutRights() {
    if (root_ && (setresgid(kNobody, kNobody, 0) || setresuid(kNobody, kNobody, 0))) _exit(1);
  }
  ~WithoutRights() {
    if (root_ && (setresuid(0, 0, 0) || setresgid(0, 0, 0))) _exit(1);
  }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;

private:
  static constexpr unsigned kNobody = 65534;
  const bool root_ = geteuid() == 0;
};

}  // namespace tv_test
