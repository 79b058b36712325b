#pragma once

#include <functional>

namespace velmora {

class CAudioEngine;
class CDSPFilter;
class CTransportState;
class IUserDialogs;

// Exchanges the engine's filter while audio may run through it. [main]
//
// Without a cross-fade the new filter is made ready and made current while the run gate is closed, and the
// audio thread waits meanwhile. With one the old filter plays on while the new one is made ready; the gate is
// closed for the exchange alone, and the old filter is faded out.
class CFilterSwap
{
  public:
    CFilterSwap(CAudioEngine& engine, const CTransportState& transport, IUserDialogs& dialogs)
        : m_engine(engine), m_transport(transport), m_dialogs(dialogs)
    {
    }

    void setCrossFade(bool bOn) { m_bCrossFade = bOn; }

    // Whether a swap would fade now.
    [[nodiscard]] bool fades() const;

    // Runs prepare, ahead of the exchange, and makes pNew current; null takes the filter out. When the result
    // is true no audio thread uses the old filter any more. False with the old filter current if prepare
    // answers false. False, and told, if the old filter does not come back from a call: it must then stay
    // alive for ever, whichever filter is current.
    [[nodiscard]] bool swapTo(CDSPFilter* pNew, const std::function<bool()>& prepare);

  private:
    bool fadeTo(CDSPFilter* pNew);
    bool isStuck(const CDSPFilter* pOther = nullptr);

    CAudioEngine& m_engine;
    const CTransportState& m_transport;
    IUserDialogs& m_dialogs;
    bool m_bCrossFade = true;
};

} // namespace velmora
