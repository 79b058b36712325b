#pragma once

#include "base/progress.h"

namespace velmora::cli {

// Thrown out of a part of the benchmark that was asked to stop.
struct CBenchInterrupted
{
};

// How far the benchmark is, in steps that take about equally long.
class CBenchSteps : public IProgress
{
  public:
    // total is told of every step.
    CBenchSteps(IProgress& total, int nSteps) : m_total(total), m_nSteps(nSteps) {}

    // One step more is done. Throws CBenchInterrupted if no other is to follow.
    void next();

    // Work within a step, however far it is, leaves the whole where it was.
    [[nodiscard]] bool report(double fDone) override;

  private:
    IProgress& m_total;
    int m_nSteps;
    int m_nDone = 0;
};

} // namespace velmora::cli
