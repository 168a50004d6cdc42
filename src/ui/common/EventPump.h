// EventPump: handling events from within a handler that has something to wait for.
#pragma once

namespace EventPump {

// Handles the events that are pending now: for at most about 20 ms, because animation and timers alone could
// keep the queue full for ever. On a clock that stands still a number of events bounds it.
void Run();

}  // namespace EventPump
