#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tavo/client/wire/byte_order.h>
#include <tests/support/wire_bytes.h>

/// Replies of a device that are spoilt in one way.
namespace attack {

using support::Bytes;
using support::u32;

/// A number from 0 on, below the one that is given, which is not 0.
using Chance = std::function<std::size_t(std::size_t below)>;

/// Where the parts of a well-formed reply lie.
struct Layout {
    /// The sizes and counts of the frame.
    std::vector<std::size_t> numbers;
    /// Begin and end of each result behind its size.
    std::vector<std::pair<std::size_t, std::size_t>> results;
    std::size_t end = 0;
};

inline std::uint32_t numberAt(const Bytes& bytes, std::size_t place) {
    return TAVOX::loadBigEndian<std::uint32_t>(bytes.data() + place);
}

inline void setNumber(Bytes& bytes, std::size_t place, std::uint32_t number) {
    TAVOX::storeBigEndian(bytes.data() + place, number);
}

/// Nothing when the reply is not there to its end.
inline std::optional<Layout> layoutOf(const Bytes& reply) {
    Layout layout;
    std::size_t place = 0;
    const auto number = [&]() -> std::optional<std::size_t> {
        if (reply.size() - place < 4)
            return std::nullopt;
        layout.numbers.push_back(place);
        place += 4;
        return numberAt(reply, place - 4);
    };
    const auto block = [&] {
        const auto size = number();
        if (!size || reply.size() - place < *size)
            return false;
        place += *size;
        return true;
    };
    if (!block() || !block())
        return std::nullopt;
    const auto count = number();
    for (std::size_t i = 0; count && i < *count; ++i) {
        if (!block())
            return std::nullopt;
        layout.results.emplace_back(layout.numbers.back() + 4, place);
    }
    layout.end = place;
    return count ? std::optional(layout) : std::nullopt;
}

/// What comes instead of a reply.
struct Spoilt {
    enum class After {
        goesOn,
        /// The same, however long the client waits for more.
        waits,
        closes,
        resets
    };
    Bytes bytes;
    After after = After::goesOn;
};

/// One of the many ways in which a reply can be wrong.
class Spoiler {
public:
    Spoiler(Bytes reply, Chance chance)
        : bytes_(std::move(reply))
        , layout_(layoutOf(bytes_).value_or(Layout{}))
        , chance_(std::move(chance)) {}

    Spoilt spoilt() {
        auto after = Spoilt::After::goesOn;
        switch (chance_(16)) {
        case 0:
            for (auto flips = 1 + chance_(8); flips > 0; --flips)
                bytes_[chance_(bytes_.size())] ^= static_cast<std::uint8_t>(1u << chance_(8));
            break;
        case 1:
            bytes_.resize(chance_(bytes_.size()));
            after = Spoilt::After::closes;
            break;
        case 2:
            bytes_.resize(chance_(bytes_.size()));
            after = chance_(64) == 1 ? Spoilt::After::waits : Spoilt::After::resets;
            break;
        case 3:
        case 4:
            setNumber(bytes_, layout_.numbers[chance_(layout_.numbers.size())], number());
            after = chance_(2) == 0 ? Spoilt::After::goesOn : Spoilt::After::closes;
            break;
        case 5:
        case 6:
            spoilNumberInResult();
            break;
        case 7:
            insert(chance_(bytes_.size() + 1), some(1 + chance_(16)));
            break;
        case 8:
            insertInResult();
            break;
        case 9:
            removeFromResult();
            break;
        case 10:
            swapResults();
            break;
        case 11:
            stretchResult();
            break;
        case 12:
            repeatResults();
            break;
        case 13:
            reportError();
            break;
        case 14:
            overwriteResult();
            break;
        default:
            bytes_ = some(chance_(64));
            after = Spoilt::After::closes;
            break;
        }
        return {std::move(bytes_), after};
    }

private:
    std::uint32_t number() {
        static constexpr std::uint32_t values[] = {
            0, 1, 2, 3, 0xFF, 0xFFFF, 0x1000, 0x0FFFFFFFu, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu};
        const auto which = chance_(std::size(values) + 1);
        return which < std::size(values) ? values[which] : static_cast<std::uint32_t>(chance_(1u << 24));
    }
    Bytes some(std::size_t count) {
        Bytes bytes(count);
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(chance_(256));
        return bytes;
    }
    void insert(std::size_t place, const Bytes& piece) {
        bytes_.insert(bytes_.begin() + static_cast<std::ptrdiff_t>(place), piece.begin(), piece.end());
    }
    /// Another content for a result, whose size is right.
    void replaceResult(std::size_t index, const Bytes& content) {
        const auto [begin, end] = layout_.results[index];
        setNumber(bytes_, begin - 4, static_cast<std::uint32_t>(content.size()));
        bytes_.erase(bytes_.begin() + static_cast<std::ptrdiff_t>(begin),
                     bytes_.begin() + static_cast<std::ptrdiff_t>(end));
        insert(begin, content);
    }
    Bytes result(std::size_t index) const {
        const auto [begin, end] = layout_.results[index];
        return {bytes_.begin() + static_cast<std::ptrdiff_t>(begin),
                bytes_.begin() + static_cast<std::ptrdiff_t>(end)};
    }
    template <class Change>
    void changeResult(Change change) {
        if (layout_.results.empty()) {
            bytes_.push_back(0);
            return;
        }
        const auto index = chance_(layout_.results.size());
        auto content = result(index);
        change(content);
        replaceResult(index, content);
    }
    void spoilNumberInResult() {
        changeResult([&](Bytes& content) {
            if (content.size() >= 4)
                setNumber(content, chance_(content.size() - 3), number());
        });
    }
    void insertInResult() {
        changeResult([&](Bytes& content) {
            const auto piece = some(1 + chance_(16));
            content.insert(content.begin() + static_cast<std::ptrdiff_t>(chance_(content.size() + 1)),
                           piece.begin(), piece.end());
        });
    }
    void removeFromResult() {
        changeResult([&](Bytes& content) {
            const auto begin = chance_(content.size() + 1);
            const auto count = std::min(content.size() - begin, 1 + chance_(16));
            content.erase(content.begin() + static_cast<std::ptrdiff_t>(begin),
                          content.begin() + static_cast<std::ptrdiff_t>(begin + count));
        });
    }
    void overwriteResult() {
        changeResult([&](Bytes& content) {
            for (auto& byte : content)
                if (chance_(4) == 0)
                    byte = static_cast<std::uint8_t>(chance_(256));
        });
    }
    void swapResults() {
        if (layout_.results.size() < 2) {
            std::reverse(bytes_.begin(), bytes_.end());
            return;
        }
        const auto first = chance_(layout_.results.size() - 1);
        const auto second = first + 1 + chance_(layout_.results.size() - 1 - first);
        const auto former = result(first);
        const auto latter = result(second);
        replaceResult(second, former); // the one behind: the places before it stay
        replaceResult(first, latter);
    }
    /// A piece of a result many times, behind a number that says how many: with luck a list.
    void stretchResult() {
        changeResult([&](Bytes& content) {
            if (content.size() < 9)
                return;
            const auto begin = 8 + chance_(content.size() - 8);
            const auto length = 1 + chance_(std::min<std::size_t>(content.size() - begin, 64));
            const auto times = std::min<std::size_t>(std::size_t{1} << chance_(17), longest / length);
            const Bytes piece(content.begin() + static_cast<std::ptrdiff_t>(begin),
                              content.begin() + static_cast<std::ptrdiff_t>(begin + length));
            Bytes many;
            for (std::size_t i = 0; i < times; ++i)
                many.insert(many.end(), piece.begin(), piece.end());
            content.insert(content.begin() + static_cast<std::ptrdiff_t>(begin), many.begin(), many.end());
            const bool countsBytes = chance_(2) == 0;
            setNumber(content, begin - 4,
                      numberAt(content, begin - 4) +
                          static_cast<std::uint32_t>(countsBytes ? times * length : times));
        });
    }
    void repeatResults() {
        if (layout_.results.empty())
            return insert(bytes_.size(), some(16));
        const auto begin = layout_.results.front().first - 4;
        const Bytes all(bytes_.begin() + static_cast<std::ptrdiff_t>(begin), bytes_.end());
        const auto times = std::min<std::size_t>(std::size_t{1} << chance_(17), longest / all.size());
        for (std::size_t i = 0; i < times; ++i)
            bytes_.insert(bytes_.end(), all.begin(), all.end());
        setNumber(bytes_, begin - 4, static_cast<std::uint32_t>((times + 1) * layout_.results.size()));
    }
    void reportError() {
        static constexpr std::uint32_t codes[] = {0,    1,    1000, 1001, 1002,       1005,
                                                  1006, 1012, 1013, 1014, 0xFFFFFFFFu};
        const auto message = some(chance_(200));
        const auto code = codes[chance_(std::size(codes))];
        const auto error = support::joined({u32(number()), u32(code), support::block(message)});
        const bool withResults = chance_(2) == 0 && layout_.numbers.size() > 2;
        const Bytes rest(bytes_.begin() +
                             static_cast<std::ptrdiff_t>(withResults ? layout_.numbers[2] : bytes_.size()),
                         bytes_.end());
        bytes_ = support::joined({u32(0), support::block(error), withResults ? rest : u32(0)});
    }

    static constexpr std::size_t longest = std::size_t{1} << 20;

    Bytes bytes_;
    Layout layout_;
    Chance chance_;
};

} // namespace attack
