#pragma once

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/lcd.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// A "cfa633" display. None of its methods reads the display, so "available" reports Lcd::toString() as its
/// info.
class TAVO_SIMULATOR_API Cfa633 : public SimulatedObject {
public:
    Cfa633();
    void reset() override;

    Lcd& lcd() { return lcd_; }

private:
    Lcd lcd_;
};

} // namespace TAVO::simulator
