// The vendor's run-time library brings _recalloc itself; there these tests check that both agree.
#include <malloc.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace
{

struct Free
{
    void operator()(char* block) const { std::free(block); }
};
using Block = std::unique_ptr<char, Free>;

Block Filled(std::size_t bytes)
{
    Block block(static_cast<char*>(std::malloc(bytes)));
    std::fill_n(block.get(), bytes, 'x');
    return block;
}

/// Null, and the old block kept, when it cannot be resized.
Block Resized(Block& old, std::size_t count, std::size_t size)
{
    Block resized(static_cast<char*>(::_recalloc(old.get(), count, size)));
    if (resized)
    {
        static_cast<void>(old.release());
    }
    return resized;
}

/// A size that no memory can provide, kept from the compiler, which knows that too.
std::size_t Impossible()
{
    volatile std::size_t size = SIZE_MAX / 2;
    return size;
}

TEST(Recalloc, GrownBlockKeepsItsBytesAndIsZeroAfterThem)
{
    Block block = Filled(10);
    const Block resized = Resized(block, 1'000, 4);
    ASSERT_TRUE(resized);
    EXPECT_LE(4'000u, ::_msize(resized.get()));
    EXPECT_EQ(std::count(resized.get(), resized.get() + 10, 'x'), 10);
    EXPECT_EQ(std::count(resized.get() + 10, resized.get() + 4'000, '\0'), 3'990);
}

// What was written past the end of so large a block would not go unnoticed.
TEST(Recalloc, LargeBlockIsZeroUpToItsEnd)
{
    constexpr std::size_t kOld = std::size_t{64} << 20;
    constexpr std::size_t kNew = kOld + 4'096;
    Block block = Filled(kOld);
    const Block resized = Resized(block, kNew, 1);
    ASSERT_TRUE(resized);
    EXPECT_EQ(resized.get()[kOld - 1], 'x');
    EXPECT_EQ(std::count(resized.get() + kOld, resized.get() + kNew, '\0'), 4'096);
}

TEST(Recalloc, ShrunkBlockKeepsItsFirstBytes)
{
    Block block = Filled(4'000);
    const Block resized = Resized(block, 10, 1);
    ASSERT_TRUE(resized);
    EXPECT_EQ(::_msize(resized.get()), 10u);
    EXPECT_EQ(std::count(resized.get(), resized.get() + 10, 'x'), 10);
}

TEST(Recalloc, WithoutABlockGivesANewZeroedOne)
{
    Block none;
    const Block block = Resized(none, 100, 2);
    ASSERT_TRUE(block);
    EXPECT_EQ(std::count(block.get(), block.get() + 200, '\0'), 200);
}

TEST(Recalloc, OverflowingProductFailsAndKeepsTheBlock)
{
    Block block = Filled(10);
    EXPECT_FALSE(Resized(block, Impossible(), 4));
    EXPECT_FALSE(Resized(block, 4, Impossible()));
    EXPECT_FALSE(Resized(block, 4, Impossible() / 2 + 2)); // what is left of the product is 4
    EXPECT_EQ(std::count(block.get(), block.get() + 10, 'x'), 10);
}

TEST(Recalloc, ElementsWithoutSizeAreNoOverflow)
{
    Block none;
    EXPECT_TRUE(Resized(none, 10, 0));
}

TEST(Recalloc, WithoutMemoryFailsAndKeepsTheBlock)
{
    Block block = Filled(10);
    EXPECT_FALSE(Resized(block, Impossible(), 1));
    EXPECT_EQ(std::count(block.get(), block.get() + 10, 'x'), 10);
}

} // namespace
