// How much larger than at 96 dots per inch the display wants things.
#pragma once

namespace vh {

// Of the primary monitor, in percent.
int MonitorScale();

} // namespace vh
