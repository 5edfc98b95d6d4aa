#pragma once
// Things that want one call per pass of the run loop.  The registry holds
// plain pointers and owns nothing; a pollable leaves it when destroyed.
namespace kelp {

class Pollable {
public:
    virtual void Poll() = 0;
    virtual ~Pollable();
};

void AddPollable(Pollable *item);
// Removes every entry of `item`; a Poll may remove itself or others.
void RemovePollable(Pollable *item);
int PollableCount();

// Calls Poll on each registered pollable, last to first.  The index is
// checked against the live count at each step, so the registry may change
// under the walk without a skipped or repeated call beyond the shift a
// removal causes.
void PollAllPollables();

} // namespace kelp
