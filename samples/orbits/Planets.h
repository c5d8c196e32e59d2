// Planets and their ways around the sun.
#pragma once

#include <string>
#include <vector>

struct TPlanet {
  std::string Name;
  double Distance;  // in astronomical units
};

// The inner ones, and one that there is not.
const std::vector<TPlanet>& Planets();

// In years. Raises std::invalid_argument for one without a distance.
double Period(const TPlanet& planet);
