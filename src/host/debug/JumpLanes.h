// Arrows beside the code: which lane each one runs in.
#pragma once

#include <vector>

namespace wrenfold {

// A jump between two lines of the code shown; From above or below To.
struct TJump {
  int From = 0;
  int To = 0;
  int Lane = 0;  // from 0, the nearest to the code
};

// Gives the jumps their lanes: short ones run nearer to the code, and two that share a line have
// different lanes, as far as there are lanes; the last one is shared.
void AssignLanes(std::vector<TJump>& jumps, int laneCount);

}  // namespace wrenfold
