#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <tavo/client/exchange/internal/known_answers.h>
#include <tavo/client/object/internal/chosen_paths.h>
#include <tavo/client/object/object.h>

namespace TAVO {

class TAVOXDevice;

/// Asks a device for the descriptions of its objects, those of one level of the tree in two batches, before
/// the tree is built. While this exists, the device answers from them what its building asks for.
///
/// What the device refuses, and what is not asked for because too much has come already, is left to the
/// building, which asks for it alone and meets the failure as if there had been no batch.
class LevelFetch {
public:
    struct Node {
        /// The name alone if `whole`: paths below a long name would hold it once each.
        std::string path;
        std::uint32_t instanceId = 0;
        bool whole = false; ///< with all members, whatever the chosen paths
    };

    explicit LevelFetch(std::shared_ptr<TAVOXDevice> device);
    LevelFetch(const LevelFetch&) = delete;
    LevelFetch& operator=(const LevelFetch&) = delete;
    ~LevelFetch();

    /// Fetches what describes these objects and all below them.
    /// @throws what TAVOXDevice::callMethods throws, but for errors that the device reports.
    void fetchTrees(std::vector<Node> level, const ChosenPaths& paths = {});
    /// Asks the "device" object for the root members, and fetches what describes these and `others`, with all
    /// below them.
    void fetchRootMembers(const Object_v1_0& deviceObject, std::vector<Node> others,
                          const ChosenPaths& paths);

private:
    class Asked;
    using Calls = std::vector<std::shared_ptr<Method>>;

    std::vector<std::unique_ptr<Asked>> describe(const std::vector<Node>& level);
    template <class Reply>
    std::shared_ptr<Reply> answerOf(const Asked& object, std::string_view method,
                                    TAVOXTranscode::DecoderFunction& decoder) const;
    static void addChosen(std::string path, const dto::Base::Member& member, const ChosenPaths& paths,
                          std::vector<Node>& nodes);
    void addMembers(const Asked& object, const ChosenPaths& paths, std::vector<Node>& nodes) const;
    void ask(const Calls& calls);
    std::size_t askSome(const Calls& calls, std::size_t first, std::size_t count);
    void keep(const Calls& calls, std::size_t first, std::size_t count);

    std::shared_ptr<TAVOXDevice> device_;
    KnownAnswers answers_;
    std::unordered_set<std::uint32_t> known_; ///< instance ids
    std::unordered_set<std::string> typesWithFactory_;
    std::size_t mostCalls_;
    unsigned refusals_ = 0;
    bool gaveUp_ = false;
};

} // namespace TAVO
