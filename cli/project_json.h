#pragma once

#include <string>
#include <vector>

class CUICtrl;

namespace velmora {
class CDSPProject;
}

namespace velmora::cli {

class CJsonWriter;

// A control's record: every field but the pointers into a running plug-in, under its own name.
void writeControlRecord(CJsonWriter& json, const CUICtrl& control);

// The record as an object of its own.
[[nodiscard]] std::string controlRecordAsJson(const CUICtrl& control);

// A project with all its members and controls.
[[nodiscard]] std::string projectAsJson(const CDSPProject& project);

// The same for people: what is said of every project, and a table of its controls.
[[nodiscard]] std::string projectAsText(const CDSPProject& project);

// The table with these controls alone.
[[nodiscard]] std::string controlsAsTable(const std::vector<CUICtrl*>& controls);

} // namespace velmora::cli
