#include <tavo/client/transcode/internal/failed_field.h>

#include <cstddef>
#include <string_view>
#include <variant>

namespace TAVO::TAVOXTranscode {

namespace {

constexpr std::uint64_t returnCodeSize = 4;
constexpr std::uint64_t lengthSize = 4;

/// Walks through values in wire order.
class Search {
public:
    Search(std::uint64_t begin, std::uint64_t offset)
        : position_(begin)
        , offset_(offset) {}

    /// Whether the value or a part of it begins at the offset.
    bool find(const ValueView& value) {
        if (const auto* record = std::get_if<ValueView::Record>(&value.data))
            return findInRecord(*record);
        if (position_ == offset_)
            return true;
        if (const auto* list = std::get_if<ValueView::List>(&value.data))
            return findInList(*list);
        position_ += sizeOnWire(value);
        return false;
    }

    /// Leads from the value that find() was given to the part that begins at the offset.
    const std::string& path() const { return path_; }

private:
    bool findInRecord(const ValueView::Record& record) {
        for (std::size_t i = 0; i < record.fields.size(); ++i)
            if (find(record[i])) {
                lead(record.fields[i].name);
                return true;
            }
        return false;
    }

    bool findInList(const ValueView::List& list) {
        position_ += lengthSize;
        for (std::size_t i = 0; i < list.size; ++i)
            if (find(list[i])) {
                lead("[" + std::to_string(i) + "]");
                return true;
            }
        return false;
    }

    static std::uint64_t sizeOnWire(const ValueView& value) {
        if (const auto* text = std::get_if<std::string_view>(&value.data))
            return lengthSize + text->size();
        if (const auto* bytes = std::get_if<ValueView::Bytes>(&value.data))
            return lengthSize + bytes->size();
        return value.width;
    }

    void lead(std::string_view part) {
        const bool isField = !path_.empty() && path_.front() != '[';
        path_.insert(0, isField ? "." : "").insert(0, part);
    }

    std::uint64_t position_;
    std::uint64_t offset_;
    std::string path_;
};

} // namespace

std::string fieldAt(std::uint64_t offset, const dto::result& outcome, const ReplyDescription* record) {
    if (offset < returnCodeSize)
        return "return code";
    Search search(returnCodeSize, offset);
    if (record && outcome.reply)
        search.find(record->view(*outcome.reply));
    return search.path();
}

} // namespace TAVO::TAVOXTranscode
