#include <tavo/trace/secrets.h>

#include <algorithm>
#include <array>

#include <tavo/client/device/device_factory.h>

namespace TAVO::trace {

namespace {

constexpr std::uint32_t lengthBytes = 4;

/// How many bytes a field of that type has; 0 if that is not fixed.
std::uint32_t widthOf(std::string_view type) {
    if (type == "bool" || type == "u8" || type == "i8")
        return 1;
    if (type == "u16" || type == "i16")
        return 2;
    if (type == "u32" || type == "i32")
        return 4;
    return type == "u64" || type == "i64" ? 8 : 0;
}

bool mayBeLock(const Names& names, const CallId& call) {
    return call.instanceId == DeviceFactory::DeviceInstanceID && !names.method(call);
}

} // namespace

bool isSecretField(std::string_view name) {
    constexpr std::array<std::string_view, 3> secrets{"password", "lockId", "response"};
    return std::ranges::find(secrets, name) != secrets.end();
}

SecretFields::SecretFields(const std::vector<FieldDescription>& fields, std::uint32_t headBytes) {
    const auto isSecret = [](const auto& field) { return isSecretField(field.name); };
    auto left = std::ranges::count_if(fields, isSecret);
    if (left == 0)
        return;
    steps_.push_back({Step::Kind::fixed, headBytes});
    for (const auto& field : fields) {
        if (left == 0)
            break;
        const bool secret = isSecret(field);
        left -= secret ? 1 : 0;
        if (const auto width = widthOf(field.type)) {
            steps_.push_back({Step::Kind::fixed, width, secret});
        } else if (field.type == "text" || field.type == "bytes") {
            steps_.push_back({Step::Kind::sized, lengthBytes, secret});
        } else { // a list or a record, which are not taken apart
            steps_.push_back({Step::Kind::rest, 0, true});
            break;
        }
    }
}

SecretFields SecretFields::everything(std::uint32_t headBytes) {
    SecretFields fields;
    fields.steps_.push_back({Step::Kind::fixed, headBytes});
    fields.steps_.push_back({Step::Kind::rest, 0, true});
    return fields;
}

SecretFields::Run SecretFields::next(Bytes bytes) {
    const auto proceed = [this] {
        ++step_;
        done_ = size_ = 0;
        isInContent_ = false;
    };
    while (step_ < steps_.size() && steps_[step_].kind == Step::Kind::fixed && steps_[step_].bytes == 0)
        proceed();
    if (step_ == steps_.size())
        return {bytes.size(), false};
    const auto& step = steps_[step_];
    if (step.kind == Step::Kind::rest)
        return {bytes.size(), true};
    const auto wanted = (isInContent_ ? size_ : step.bytes) - done_;
    const auto run = std::min<std::size_t>(bytes.size(), wanted);
    const Run found{run, step.isSecret && (step.kind == Step::Kind::fixed || isInContent_)};
    if (step.kind == Step::Kind::sized && !isInContent_)
        for (const auto byte : bytes.first(run))
            size_ = size_ << 8 | byte;
    done_ += static_cast<std::uint32_t>(run);
    if (run < wanted)
        return found;
    if (step.kind == Step::Kind::sized && !isInContent_ && size_ > 0) {
        isInContent_ = true;
        done_ = 0;
    } else {
        proceed();
    }
    return found;
}

SecretFields secretParameters(const Names& names, const CallId& call) {
    if (const auto* row = names.row(call))
        return row->request ? SecretFields(row->request->fields(), 0) : SecretFields();
    return mayBeLock(names, call) ? SecretFields::everything(0) : SecretFields();
}

SecretFields secretResult(const Names& names, const CallId& call) {
    constexpr std::uint32_t returnCodeBytes = 4;
    if (const auto* row = names.row(call))
        return row->reply ? SecretFields(row->reply->fields(), returnCodeBytes) : SecretFields();
    return mayBeLock(names, call) ? SecretFields::everything(returnCodeBytes) : SecretFields();
}

} // namespace TAVO::trace
