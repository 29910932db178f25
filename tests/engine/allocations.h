// Count of the allocations of this test program.
#pragma once

namespace tv::test {

long allocations();

}  // namespace tv::test
