#include <tavo/simulator/objects/com.h>

#include <utility>

#include <tavo/client/commonmodules/com.h>

namespace TAVO::simulator {

namespace {

namespace com_v1_0 = CommonModules::TAVOXTranscode::com_v1_0;
using namespace dto::com;

SerialPort::Settings settingsOf(const OpenRequest& request) {
    return {request.value1, request.value2, request.flag1, request.flag2, request.value3,
            request.flag3,  request.flag4,  request.flag5, request.flag6};
}

} // namespace

Com::Com(std::shared_ptr<Board> board)
    : SimulatedObject("com", "1.0")
    , port_(std::make_shared<SerialConsole>(std::move(board))) {
    on(com_v1_0::open, [this](const OpenRequest& request) { return port_.open(settingsOf(request)); });
    on(com_v1_0::close, [this] { return port_.close(); });
    on(com_v1_0::send, [this](const SendRequest& request) { return port_.send(request.data); });
    on(com_v1_0::recv, [this](const RecvRequest& request) {
        Answer<RecvReply> answer;
        answer.code = port_.receive(request.value, answer.reply.data);
        return answer;
    });
}

void Com::reset() { port_.close(); }

} // namespace TAVO::simulator
