#include <tavo/toolkit/access.h>

namespace TAVO::toolkit {

void Access::insistOnAll(const Methods& executed) {
    for (const auto& call : executed)
        insist(*call);
}

void Access::runAll(const Methods& calls) {
    run(calls);
    insistOnAll(calls);
}

void Access::releaseAll(const Methods& calls) {
    runLast(calls);
    insistOnAll(calls);
}

jtag::Executor Access::executor() {
    return {[this](const Methods& calls) { run(calls); },
            [this](const Method& executed) { insist(executed); }};
}

jtag::Executor Access::lastExecutor() {
    return {[this](const Methods& calls) { runLast(calls); },
            [this](const Method& executed) { insist(executed); }};
}

} // namespace TAVO::toolkit
