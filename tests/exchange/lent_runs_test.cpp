#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/wire/output_stream.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/output_chunks.h>
#include <tests/support/wire_bytes.h>

namespace {

using support::chunkSizes;
using support::NothrowLimit;
using support::written;
using TAVOX::OutputStream;
using Bytes = std::vector<std::uint8_t>;

constexpr auto capacity = support::chunkCapacity;

class ReadyLender : public TAVOX::Lender {
public:
    explicit ReadyLender(bool answers = true)
        : answers_(answers) {}
    bool answersForRuns() noexcept override {
        ++asked;
        return answers_;
    }
    int asked = 0;

private:
    bool answers_;
};

TEST(LentRuns, AlwaysCopiesWhatItIsGivenToWrite) {
    Bytes run(OutputStream::shortestLent, 0xAB);
    ReadyLender lender;
    OutputStream out;
    out.takeLentRuns(lender);
    out.writeBytes(run.size(), run.data());
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{capacity, capacity, 64 * 1024 + 4 - 2 * capacity}));
    EXPECT_EQ(lender.asked, 0);
}

TEST(LentRuns, CopiesWhatItIsLentUnlessItsLenderAnswersForIt) {
    const Bytes run(OutputStream::shortestLent, 0xAB);
    const std::vector<std::size_t> copied{capacity, capacity, 64 * 1024 + 4 - 2 * capacity};
    OutputStream withoutLender;
    withoutLender.lendBytes(run.size(), run.data());
    EXPECT_EQ(chunkSizes(withoutLender), copied);

    ReadyLender refuses(false);
    OutputStream out;
    out.takeLentRuns(refuses);
    out.lendBytes(run.size(), run.data());
    EXPECT_EQ(chunkSizes(out), copied);
    out.lendBytes(run.size(), run.data());
    EXPECT_EQ(refuses.asked, 1) << "the answer holds for all runs";
}

TEST(LentRuns, AsksItsLenderForLongRunsAlone) {
    const Bytes run(OutputStream::shortestLent, 0xAB);
    ReadyLender lender;
    OutputStream out;
    out.takeLentRuns(lender);
    out.lendBytes(3, run.data());
    out.lendBytes(run.size() - 1, run.data());
    EXPECT_EQ(lender.asked, 0);
    out.lendBytes(run.size(), run.data());
    out.lendBytes(run.size(), run.data());
    EXPECT_EQ(lender.asked, 1);
}

TEST(LentRuns, LeavesLongRunsThatAreLentWhereTheyLie) {
    const Bytes run(OutputStream::shortestLent, 0xAB);
    const Bytes shorter(OutputStream::shortestLent - 1, 0xCD);
    ReadyLender lender;
    OutputStream out;
    out.takeLentRuns(lender);
    out.writeUInt32(1);
    out.beginSizedBlock();
    out.lendBytes(run.size(), run.data());
    out.lendBytes(shorter.size(), shorter.data());
    out.endSizedBlock();
    out.writeByte(9);

    EXPECT_EQ(out.chunks()[1].data(), run.data());
    EXPECT_EQ(out.chunks()[1].size(), run.size());
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{12, 64 * 1024, capacity, capacity,
                                                         64 * 1024 - 1 + 4 + 1 - 2 * capacity}));
    EXPECT_EQ(out.total(), 12 + 64 * 1024 + 4 + 64 * 1024 - 1 + 1u);
    EXPECT_EQ(out.total(), written(out).size());
    EXPECT_EQ(written(out), support::joined({Bytes{0, 0, 0, 1, 0, 2, 0, 7, 0, 1, 0, 0}, run,
                                             Bytes{0, 0, 0xFF, 0xFF}, shorter, Bytes{9}}));
}

TEST(LentRuns, LeavesOneLentRunBehindTheOther) {
    const Bytes run(OutputStream::shortestLent, 0xAB);
    ReadyLender lender;
    OutputStream out;
    out.takeLentRuns(lender);
    for (int i = 0; i < 3; ++i)
        out.lendBytes(run.size(), run.data());
    EXPECT_EQ(chunkSizes(out), (std::vector<std::size_t>{4, 64 * 1024, 4, 64 * 1024, 4, 64 * 1024}));
}

TEST(LentRuns, FailsBehindALentRunWhenThereIsNoMemory) {
    const Bytes run(OutputStream::shortestLent, 0xAB);
    ReadyLender lender;
    OutputStream out;
    out.takeLentRuns(lender);
    out.lendBytes(run.size(), run.data());
    const NothrowLimit none(0);
    out.writeByte(1);
    EXPECT_TRUE(out.failed());
    out.lendBytes(run.size(), run.data());
    EXPECT_EQ(out.total(), 4 + run.size());
}

} // namespace
