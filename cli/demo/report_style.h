#pragma once

namespace velmora::cli {

// The report's style sheet. Text keeps a contrast of at least 4.5 to 1 in both colour schemes.
extern const char* const REPORT_STYLE;

} // namespace velmora::cli
