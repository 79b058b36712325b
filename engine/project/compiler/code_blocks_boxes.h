#pragma once

#include "project/compiler/compiler_driver.h"

#include <optional>
#include <string>

namespace velmora {

// The questions that Code::Blocks asks in boxes while it is driven, and the answers that lead on. One that
// is not known is left to the user. [main]
class CCodeBlocksBoxes
{
  public:
    explicit CCodeBlocksBoxes(CCompilerDriver& driver) : m_driver(driver) {}

    // Answers all boxes that are there or come within this time after the last one, but none about changed
    // files while the editor in front holds text that is not saved. False, with the reason in error(), if
    // one stays.
    [[nodiscard]] bool answer(double dSettleSeconds);

    // Answers the box that is there now, if any. False as above.
    [[nodiscard]] bool answerOne(bool& bFound);

    [[nodiscard]] const std::string& error() const { return m_sError; }

  private:
    [[nodiscard]] std::optional<CWindow> box(bool& bUnsaved);

    CCompilerDriver& m_driver;
    std::string m_sError;
};

} // namespace velmora
