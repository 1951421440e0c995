#include <tests/hostile/wrong_replies.h>

#include <set>

#include <tavo/client/wire/byte_order.h>

namespace hostile {

namespace {

/// Wrong values of a field that says how much follows.
std::set<std::uint32_t> wrongValues(const Bytes& right) {
    const auto value = TAVOX::loadBigEndian<std::uint32_t>(right.data());
    std::set<std::uint32_t> wrong{0, value + 1, value - 1, 0x7FFFFFFF, 0xFFFFFFFF};
    wrong.erase(value);
    return wrong;
}

bool isResultSize(const Field& field) { return field.name.starts_with("result size of "); }

/// The reply with one field changed, for each size and count in it and each wrong value.
std::vector<WrongReply> wrongAlone(Layout layout) {
    std::vector<WrongReply> replies;
    for (auto& field : layout) {
        if (!field.announces)
            continue;
        const auto right = field.bytes;
        for (const auto wrong : wrongValues(right)) {
            field.bytes = support::u32(wrong);
            replies.push_back({field.name + " says " + std::to_string(wrong), bytesOf(layout)});
        }
        field.bytes = right;
    }
    return replies;
}

/// The reply with a size or count within a result that is huge, and a result that claims to be large enough.
std::vector<WrongReply> wrongTogether(Layout layout) {
    std::vector<WrongReply> replies;
    Field* size = nullptr;
    for (auto& field : layout) {
        if (isResultSize(field))
            size = &field;
        if (!field.announces || !size || size == &field)
            continue;
        const auto right = field.bytes;
        const auto rightSize = size->bytes;
        for (const std::uint32_t wrongSize : {0x7FFFFFFFu, 0xFFFFFFFFu})
            for (const std::uint32_t wrong : {0x00FFFFFFu, 0x7FFFFF00u}) {
                size->bytes = support::u32(wrongSize);
                field.bytes = support::u32(wrong);
                replies.push_back({field.name + " says " + std::to_string(wrong) + " and the " + size->name +
                                       " says " + std::to_string(wrongSize),
                                   bytesOf(layout)});
            }
        field.bytes = right;
        size->bytes = rightSize;
    }
    return replies;
}

} // namespace

std::vector<WrongReply> wrongRepliesAt(std::size_t place) {
    auto replies = wrongAlone(conversation()[place].layout);
    const auto more = wrongTogether(conversation()[place].layout);
    replies.insert(replies.end(), more.begin(), more.end());
    return replies;
}

Plan::Action sending(const Bytes& bytes) {
    return [bytes](support::RawConnection& connection, const Exchange&) {
        connection.readRequest();
        connection.finishWith(bytes);
    };
}

} // namespace hostile
