#pragma once

#include <string_view>

namespace velmora {

class CDSPFilter;
struct CAudioFormat;

// Port: what the document tells the main window beyond the private messages. Each operation does nothing
// unless a window overrides it. [main]
class IDocumentView
{
  public:
    virtual ~IDocumentView() = default;

    // The title of the document and of the main window.
    virtual void setTitle(std::string_view) {}

    // The transport's state, the meters or the analyzer's picture have changed.
    virtual void refresh() {}

    // Rate, channels and depth of the audio that is about to run: for the analyzer and the scope's time
    // bases.
    virtual void showFormat(const CAudioFormat&) {}

    // The panel is to be laid out for this filter; null empties it.
    virtual void showFilter(CDSPFilter*) {}

    // A filter's own window is to be closed, before its library goes.
    virtual void closeCustomGUI() {}

    // The analyzer's impulse responses: none, or those of the current filter (nLength samples each).
    virtual void clearImpulses() {}
    virtual void showImpulses(const float* /*pLeft*/, const float* /*pRight*/, int /*nLength*/) {}

    // The open project is about to go: what shows it lets go of it.
    virtual void releaseProject() {}

    // Another project is open now, or none.
    virtual void takeProject() {}

    // The transport has stopped by itself or by command: the analyzer stops, too.
    virtual void streamStopped() {}
};

} // namespace velmora
