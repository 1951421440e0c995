#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/object/multicall_queue.h>

namespace {

using TAVO::Method;
using TAVO::MulticallQueue;
using Methods = std::deque<std::shared_ptr<Method>>;

const TAVO::Container anything("thing", nullptr);

std::shared_ptr<Method> queued(const std::string& name) {
    return std::make_shared<Method>(name, anything, TAVO::dto::Params());
}

TEST(MulticallQueue, IsEmptyAtFirst) { EXPECT_TRUE(MulticallQueue().getMethods().empty()); }

TEST(MulticallQueue, KeepsTheOrderOfAddingAndDuplicates) {
    const auto a = queued("a");
    const auto b = queued("b");
    MulticallQueue queue;
    for (const auto& each : {b, a, b, std::shared_ptr<Method>()})
        queue.add(each);
    EXPECT_EQ(queue.getMethods(), (Methods{b, a, b, nullptr}));
}

TEST(MulticallQueue, CanBeReadWhereItMustNotBeEdited) {
    MulticallQueue queue;
    const auto a = queued("a");
    queue.add(a);
    const auto& read = queue;
    EXPECT_EQ(read.getMethods(), Methods{a});
    static_assert(std::is_const_v<std::remove_reference_t<decltype(read.getMethods())>>);
}

TEST(MulticallQueue, CanBeEdited) {
    MulticallQueue queue;
    queue.add(queued("a"));
    queue.getMethods().clear();
    EXPECT_TRUE(queue.getMethods().empty());
}

TEST(MulticallQueue, SharesItsMethodsWithItsCopies) {
    const auto a = queued("a");
    MulticallQueue queue;
    queue.add(a);
    MulticallQueue copy(queue);
    MulticallQueue assigned;
    assigned = queue;
    EXPECT_EQ(copy.getMethods(), Methods{a});
    EXPECT_EQ(assigned.getMethods(), Methods{a});
    copy.getMethods().front()->setResult({4, nullptr});
    EXPECT_EQ(queue.getMethods().front()->returnCode(), 4);
    copy.add(queued("b"));
    EXPECT_EQ(queue.getMethods().size(), 1u);
}

TEST(MulticallQueue, LetsADerivedQueueFilterWhatIsAdded) {
    struct OnlyShortNames : MulticallQueue {
        void add(const std::shared_ptr<Method>& candidate) override {
            if (candidate->getName().size() == 1)
                MulticallQueue::add(candidate);
        }
    };
    OnlyShortNames derived;
    MulticallQueue& queue = derived;
    queue.add(queued("a"));
    queue.add(queued("long"));
    EXPECT_EQ(queue.getMethods().size(), 1u);
}

} // namespace
