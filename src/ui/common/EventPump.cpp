#include "ui/common/EventPump.h"

#include <wx/app.h>
#include <wx/evtloop.h>

#include "platform/Clock.h"

void EventPump::Run() {
  constexpr double dMost = 0.02;      // seconds
  constexpr double dIdleGap = 0.015;  // seconds; idle work lays out and deletes: not for every packet
  constexpr int lMostEvents = 100;
  static DateTime dtLastIdle = 0;
  wxEventLoopBase* pLoop = wxEventLoopBase::GetActive();
  if (!pLoop) return;
  const DateTime dtStart = Clock::SteadyNow();
  const DateTime dtEnd = AddSeconds(dtStart, dMost);
  wxTheApp->ProcessPendingEvents();
  for (int i = 0; i < lMostEvents && pLoop->Pending() && Clock::SteadyNow() < dtEnd; ++i)
    pLoop->Dispatch();
  // Another clock may have been put in place meanwhile, or it stands still.
  const bool bRecently = dtLastIdle < dtStart && dtStart < AddSeconds(dtLastIdle, dIdleGap);
  if (bRecently) return;
  dtLastIdle = dtStart;
  pLoop->ProcessIdle();
}
