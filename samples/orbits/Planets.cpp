#include "Planets.h"

#include <cmath>
#include <stdexcept>

const std::vector<TPlanet>& Planets() {
  static const std::vector<TPlanet> planets{
      {"Mercury", 0.387}, {"Venus", 0.723}, {"Earth", 1}, {"Mars", 1.524}, {"Vulcan", 0}};
  return planets;
}

double Period(const TPlanet& planet) {
  if (planet.Distance <= 0) throw std::invalid_argument(planet.Name + " is nowhere");
  return std::sqrt(planet.Distance * planet.Distance * planet.Distance);
}
