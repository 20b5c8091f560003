#include "views/task_pool.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <atomic>

#include "support/gate.h"

namespace varnelo {
namespace {

bool inSingleThreadedApartment() {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) == S_OK && (type == APTTYPE_STA || type == APTTYPE_MAINSTA);
}

TEST(TaskPoolWinTest, EveryWorkerIsInASingleThreadedApartmentOfItsOwn) {
    constexpr int kWorkers = 3;
    test::Gate allRun(kWorkers);
    std::atomic<int> apartments{0};
    {
        TaskPool pool(kWorkers);
        for (int i = 0; i < kWorkers; ++i) {
            pool.enqueue(L"", [&] {
                apartments += inSingleThreadedApartment();
                allRun.arriveAndWait();  // so that each worker takes one
            });
        }
    }
    EXPECT_EQ(apartments, kWorkers);
}

}  // namespace
}  // namespace varnelo
