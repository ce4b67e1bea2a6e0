// The stores of captured pictures go round: back to the pool when the last reference goes, never more
// than the pool keeps, and never of a stale size.
#include "base/media/PixelBufferPool.h"

#include <gtest/gtest.h>

#include <thread>

namespace kestrum {
namespace {

constexpr std::size_t kBytes = 64 * 4 * 48;

std::shared_ptr<const PixelBuffer> made(PixelBufferPool& pool, std::size_t byteCount = kBytes) {
    return pool.make(64, 48, 64 * 4, pool.take(byteCount));
}

TEST(PixelBufferPool, StoresComeBackWhenTheLastReferenceGoes) {
    PixelBufferPool pool(2);
    auto first = made(pool);
    const std::uint8_t* store = first->data();
    ASSERT_TRUE(first->isValid());
    auto shared = first;
    first.reset();
    EXPECT_EQ(pool.idleCount(), 0u) << "still referenced";
    // Released on another thread, as the writer's encoder thread does.
    std::thread([held = std::move(shared)]() mutable { held.reset(); }).join();
    EXPECT_EQ(pool.idleCount(), 1u);
    EXPECT_EQ(made(pool)->data(), store) << "the same store is handed out again";
}

TEST(PixelBufferPool, KeepsAtMostItsLimitAndDropsStoresOfAnotherSize) {
    struct Case {
        const char* name;
        int released;
        std::size_t nextByteCount;
        std::size_t idleAfterNextTake;
    };
    const Case cases[] = {
        {"three released, two kept, one taken", 3, kBytes, 1},
        {"a new size empties the pool", 2, kBytes * 2, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PixelBufferPool pool(2);
        std::vector<std::shared_ptr<const PixelBuffer>> buffers;
        for (int index = 0; index < c.released; ++index) buffers.push_back(made(pool));
        buffers.clear();
        EXPECT_EQ(pool.idleCount(), std::min<std::size_t>(2, static_cast<std::size_t>(c.released)));
        const std::vector<std::uint8_t> next = pool.take(c.nextByteCount);
        EXPECT_EQ(next.size(), c.nextByteCount);
        EXPECT_EQ(pool.idleCount(), c.idleAfterNextTake);
    }
}

TEST(PixelBufferPool, ABufferMayOutliveItsPool) {
    std::shared_ptr<const PixelBuffer> survivor;
    {
        PixelBufferPool pool(2);
        survivor = made(pool);
    }
    EXPECT_TRUE(survivor->isValid());
    survivor.reset();  // gives its store to a pool no one holds any more; must not touch freed memory
}

}  // namespace
}  // namespace kestrum
