#pragma once

namespace velmora {

// Port: how long work tells how far it is, and asks whether to go on.
class IProgress
{
  public:
    virtual ~IProgress() = default;

    // fDone is the finished part, 0.0 to 1.0. False asks the work to stop. Called on the thread that
    // does the work.
    [[nodiscard]] virtual bool report(double fDone) = 0;
};

} // namespace velmora
