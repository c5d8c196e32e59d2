//---------------------------------------------------------------------------
#ifndef ClockH
#define ClockH
//---------------------------------------------------------------------------
#include <time.h>

// Counts the seconds that a task took, over any number of starts and stops.
class Clock
{
public:
        Clock() : FStarted(0), FSeconds(0) {}
        void Start();
        void Stop();
        bool Running() const { return FStarted != 0; }
        long Seconds() const;
private:
        time_t FStarted;
        long FSeconds;
};
//---------------------------------------------------------------------------
#endif
