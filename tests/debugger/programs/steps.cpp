// A program to be stopped in: the tests find its lines by their comments.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>

struct TPoint {
  int X;
  int Y;
};

int Sum(const TPoint& point) {
  const int sum = point.X + point.Y;  // the sum
  return sum;
}

class EStep : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

void Raise() {
  throw EStep("too far");  // the raising
}

int main(int count, char** arguments) {
  TPoint point{3, 4};
  if (count > 1 && std::strcmp(arguments[1], "forever") == 0)
    for (;;) usleep(1000);
  if (count > 1 && std::strcmp(arguments[1], "crash") == 0)
    *static_cast<volatile int*>(nullptr) = 1;
  if (count > 1 && std::strcmp(arguments[1], "flood") == 0)
    for (int i = 0; i < 20000; ++i)
      std::printf("a line of output that is fifty characters long 12345\n");
  if (count > 1 && std::strcmp(arguments[1], "raise") == 0) try {
      Raise();
    } catch (const std::exception& error) {
      std::puts(error.what());
    }
  if (count > 1 && std::strcmp(arguments[1], "fork") == 0) {
    if (fork() == 0) _exit(0);
    wait(nullptr);
  }
  int total = 0;
  for (int i = 0; i < 5; ++i) total += Sum(point);  // the loop
  std::printf("total %d\n", total);
  return 7;
}
