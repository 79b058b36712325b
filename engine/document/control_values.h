#pragma once

#include <map>
#include <string>
#include <vector>

class CPlugIn;

namespace velmora {

// What became of the controls' values when one build of a plug-in followed another; variable names.
struct CControlChanges
{
    std::vector<std::string> m_carried; // in both: the value was carried over
    std::vector<std::string> m_new;     // took their initial value
    std::vector<std::string> m_dropped; // gone from the new build
};

// The values of a plug-in's variables by name, taken from one build and given to the next. [main]
class CControlValues
{
  public:
    CControlValues() = default;

    // The present values of all controls that are bound to a variable.
    explicit CControlValues(const CPlugIn& plugIn);

    [[nodiscard]] bool isEmpty() const { return m_values.empty(); }

    // Writes the values to the variables of the same name, converted to their type and limited to the
    // control's range, and calls userInterfaceChange() for each that was written.
    CControlChanges applyTo(CPlugIn& plugIn) const;

  private:
    std::map<std::string, double> m_values;
};

} // namespace velmora
