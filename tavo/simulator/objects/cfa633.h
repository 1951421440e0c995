#pragma once

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/lcd.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// A "cfa633": the display. No method of the type reads it back, so "available" tells Lcd::toString() as its
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
