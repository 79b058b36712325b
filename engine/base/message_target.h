#pragma once

#include <cstddef>

namespace velmora {

// Port: the receiver of the private window messages. Message numbers and parameters are those of the
// contract (pluginconstants.h) and of the view's table.
class IMessageTarget
{
  public:
    virtual ~IMessageTarget() = default;

    // Leaves a message and returns at once. [any]
    virtual void post(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam) = 0;

    // Delivers a message and returns the answer. [any but audio]
    virtual std::ptrdiff_t send(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam) = 0;
};

} // namespace velmora
