#include <tests/hostile/positions.h>

#include <set>

namespace hostile {

namespace {

/// How many fields of a large reply are chosen at its begin, between, and at its end.
constexpr std::size_t chosenOfEach = 12;
/// A large reply of so few fields is disturbed at each of them.
constexpr std::size_t fewFields = 80;
constexpr std::size_t longField = 512;
/// Between two positions within a long field; odd, so that they fall on each place of a word.
constexpr std::size_t step = 4099;
/// What a client receives into one piece of memory.
constexpr std::size_t edge = 65536;

std::size_t sizeOf(const Layout& layout) {
    std::size_t size = 0;
    for (const auto& field : layout)
        size += field.bytes.size();
    return size;
}

bool isChosenByNumber(std::size_t number, std::size_t fields) {
    const auto behind = fields - number - 1;
    return number < chosenOfEach || behind < chosenOfEach || number % (fields / chosenOfEach) == 0;
}

} // namespace

std::vector<std::size_t> chosenFields(const Layout& layout) {
    const bool all = sizeOf(layout) <= smallReply || layout.size() <= fewFields;
    std::vector<std::size_t> chosen;
    std::size_t begin = 0;
    for (std::size_t number = 0; number < layout.size(); ++number) {
        const auto end = begin + layout[number].bytes.size();
        if (all || isChosenByNumber(number, layout.size()) || begin / edge != end / edge)
            chosen.push_back(number);
        begin = end;
    }
    return chosen;
}

std::vector<std::size_t> cutPositions(const Layout& layout) {
    const auto size = sizeOf(layout);
    std::set<std::size_t> positions;
    const auto around = [&](std::size_t position) {
        for (const auto near : {position - 1, position, position + 1})
            if (near < size)
                positions.insert(near);
    };
    if (size <= smallReply) {
        for (std::size_t position = 0; position < size; ++position)
            positions.insert(position);
        return {positions.begin(), positions.end()};
    }
    const auto chosen = chosenFields(layout);
    auto next = chosen.begin();
    std::size_t begin = 0;
    for (std::size_t number = 0; number < layout.size() && next != chosen.end(); ++number) {
        const auto length = layout[number].bytes.size();
        if (number == *next) {
            ++next;
            around(begin);
            for (auto inside = step; length > longField && inside < length; inside += step)
                positions.insert(begin + inside);
        }
        begin += length;
    }
    for (auto position = edge; position <= size; position += edge)
        around(position);
    around(size);
    return {positions.begin(), positions.end()};
}

} // namespace hostile
