// A console program to run, stop and step in: how long planets take around the sun.
#include <cstdio>
#include <exception>

#include "Planets.h"

// The units of the project; the compiler is told of them by the Makefile.
#define USEUNIT(FileName)
USEUNIT("Planets.cpp")

int main() {
  double longest = 0;
  for (const TPlanet& planet : Planets()) {
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
