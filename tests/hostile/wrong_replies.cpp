#include <tests/hostile/wrong_replies.h>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <set>
#include <utility>

#include <tavo/client/wire/byte_order.h>
#include <tests/hostile/positions.h>

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

/// A reply and some of its sizes and counts.
class Forger {
public:
    explicit Forger(const Layout& layout)
        : layout_(layout) {
        std::size_t offset = 0;
        for (const auto& field : layout) {
            offsets_.push_back(offset);
            offset += field.bytes.size();
        }
    }

    /// The reply with one field changed, for each chosen size and count in it and each wrong value.
    void changeOne() {
        for (const auto number : chosenFields(layout_))
            if (layout_[number].announces)
                for (const auto wrong : wrongValues(layout_[number].bytes))
                    add({{number, wrong}});
    }

    /// The reply with a size or count within a result that is huge, and a result that claims to be large
    /// enough.
    void changeTwo() {
        for (const auto number : chosenFields(layout_)) {
            const auto resultSize = resultSizeBefore(number);
            if (!layout_[number].announces || !resultSize)
                continue;
            for (const std::uint32_t wrongSize : {0x7FFFFFFFu, 0xFFFFFFFFu})
                for (const std::uint32_t wrong : {0x00FFFFFFu, 0x7FFFFF00u})
                    add({{*resultSize, wrongSize}, {number, wrong}});
        }
    }

    std::vector<WrongReply> forged;

private:
    struct Claim {
        std::size_t field;
        std::uint32_t value;
    };

    void add(std::initializer_list<Claim> claims) {
        auto& wrong = forged.emplace_back();
        for (const auto& [field, value] : claims) {
            wrong.what +=
                "the " + layout_[field].name.substr(0, 80) + " says " + std::to_string(value) + "; ";
            wrong.changes.push_back({offsets_[field], value});
        }
    }

    /// The size of the result in which that field lies, none for a field that lies in no result.
    std::optional<std::size_t> resultSizeBefore(std::size_t number) const {
        if (isResultSize(layout_[number]))
            return std::nullopt;
        while (number-- > 0)
            if (isResultSize(layout_[number]))
                return number;
        return std::nullopt;
    }

    const Layout& layout_;
    std::vector<std::size_t> offsets_;
};

} // namespace

Bytes WrongReply::of(Bytes right) const {
    for (const auto& [offset, value] : changes) {
        const auto bytes = support::u32(value);
        std::copy(bytes.begin(), bytes.end(), right.begin() + static_cast<std::ptrdiff_t>(offset));
    }
    return right;
}

std::vector<WrongReply> wrongReplies(const Layout& layout) {
    Forger forger(layout);
    forger.changeOne();
    forger.changeTwo();
    return std::move(forger.forged);
}

Plan::Action sending(const Bytes& bytes) {
    return [bytes](support::RawConnection& connection, const Exchange&) {
        connection.readRequest();
        connection.finishWith(bytes);
    };
}

} // namespace hostile
