// A console program to run, stop and step in: how long planets take around the sun.
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

struct TPlanet {
  std::string Name;
  double Distance;  // in astronomical units
};

// In years.
double Period(const TPlanet& planet) {
  if (planet.Distance <= 0) throw std::invalid_argument(planet.Name + " is nowhere");
  return std::sqrt(planet.Distance * planet.Distance * planet.Distance);
}

int main() {
  const std::vector<TPlanet> planets{
      {"Mercury", 0.387}, {"Venus", 0.723}, {"Earth", 1}, {"Mars", 1.524}, {"Vulcan", 0}};
  double longest = 0;
  for (const TPlanet& planet : planets) {
    try {
      const double years = Period(planet);
      if (years > longest) longest = years;
      std::printf("%-8s %6.2f years\n", planet.Name.c_str(), years);
    } catch (const std::exception& error) {
      std::printf("%s\n", error.what());
    }
  }
  std::printf("the longest takes %.2f years\n", longest);
}
