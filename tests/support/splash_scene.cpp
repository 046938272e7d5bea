#include "tests/support/splash_scene.h"

#include <cstdio>

#include "tests/support/files.h"

namespace test {

static const int kScreenHeight = 800;

SplashShot::SplashShot(const std::string& path, const SplashState& state)
    : picture_(path),
      left_(static_cast<int>(state.x)),
      bottom_(kScreenHeight - static_cast<int>(state.y)) {}

Pixel SplashShot::at(int x, int y) const {
  return picture_.at(left_ + x, bottom_ - 1 - y);
}

// Reads "state percent=50 frame=0 ... window=X,Y,WIDTH,HEIGHT view=WIDTHxHEIGHT ...".
static SplashState readState(const std::string& line) {
  SplashState state;
  size_t at = line.find(' ');
  while (at != std::string::npos) {
    const size_t end = line.find(' ', at + 1);
    const std::string pair = line.substr(at + 1, end - at - 1);
    const size_t equals = pair.find('=');
    const std::string name = pair.substr(0, equals);
    const std::string value = pair.substr(equals + 1);
    if (name == "window") {
      sscanf(value.c_str(), "%lf,%lf,%lf,%lf", &state.x, &state.y, &state.width, &state.height);
    } else if (name == "view") {
      sscanf(value.c_str(), "%dx%d", &state.viewWidth, &state.viewHeight);
    } else if (name == "image") {
      sscanf(value.c_str(), "%dx%d", &state.imageWidth, &state.imageHeight);
    } else {
      state.values[name] = atoi(value.c_str());
    }
    at = end;
  }
  return state;
}

void SplashScene::SetUp() {
  image_ = image(300, 200);
}

std::string SplashScene::image(int width, int height) {
  const std::string path =
      folder_ / (std::to_string(width) + "x" + std::to_string(height) + ".png");
  writeQuartersPng(path, width, height);
  return path;
}

void SplashScene::play(const Steps& steps) {
  const OwnDisplay display;
  playOn(display.name(), steps);
}

void SplashScene::playOn(const std::string& display, const Steps& steps) {
  Command command{{QUORVANE_BIN "/splash_driver"}, home_.environment()};
  command.environment["DISPLAY"] = display;
  std::vector<std::string> pictures;
  for (const std::string& step : steps) {
    if (step == "shoot") {
      pictures.push_back(folder_ / ("shot" + std::to_string(pictures.size()) + ".ppm"));
      command.arguments.insert(command.arguments.end(), {"shoot", pictures.back()});
    } else {
      command.arguments.push_back(step);
    }
  }
  const Result result = run(command);
  out_ = result.out;
  err_ = result.err;
  ASSERT_EQ(result.status, 0) << "signal " << result.signal << "\n" << out_ << err_;
  for (const std::string& line : linesOf(out_)) {
    if (line.rfind("state ", 0) == 0) {
      states_.push_back(readState(line));
    } else if (line.rfind("shot ", 0) == 0) {
      shots_.emplace_back(pictures[shots_.size()], readState(line));
    }
  }
}

std::vector<std::string> SplashScene::lines() const {
  std::vector<std::string> lines;
  for (const std::string& line : linesOf(out_)) {
    if (line.rfind("state ", 0) != 0 && line.rfind("shot ", 0) != 0) {
      lines.push_back(line);
    }
  }
  return lines;
}

}  // namespace test
