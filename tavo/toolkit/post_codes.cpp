#include <tavo/toolkit/post_codes.h>

namespace TAVO::toolkit {

namespace lpcPostCode_v1_0 = TAVOXTranscode::lpcPostCode_v1_0;

std::vector<dto::lpcPostCode::FifoEntry> takeCodes(Access& access,
                                                   const HWDebug::LpcPostCode_v1_0& receiver) {
    const auto get = receiver.make(lpcPostCode_v1_0::fifoGet);
    access.runAll({get, receiver.make(lpcPostCode_v1_0::fifoClear)});
    return get->take().entries;
}

} // namespace TAVO::toolkit
