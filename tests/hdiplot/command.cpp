// A child process with its streams in files.
#include "tests/hdiplot/command.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace command {

namespace fs = std::filesystem;

namespace {

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void Redirect(const fs::path& file, int descriptor, int flags) {
  const int opened = open(file.c_str(), flags, 0600);
  dup2(opened, descriptor);
  close(opened);
}

}  // namespace

Workplace::Workplace() {
  std::string name = (fs::temp_directory_path() / "hdiplot.XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
  directory_ = name;
}

Workplace::~Workplace() {
  fs::remove_all(directory_);
  fs::remove(Beside(".log"));
}

void Workplace::Write(const std::string& name, const std::string& text) const {
  std::ofstream(Path(name), std::ios::binary) << text;
}

std::string Workplace::Read(const std::string& name) const { return ReadFile(Path(name)); }

bool Workplace::Has(const std::string& name) const { return fs::exists(Path(name)); }

std::vector<std::string> Workplace::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory_))
    names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

Outcome Workplace::RunFake(const std::vector<std::string>& arguments,
                           const std::map<std::string, std::string>& variables) const {
  std::map<std::string, std::string> all = variables;
  all.emplace("HDI_MODULE", HDIPLOT_FAKE_MODULE);
  all.emplace("FAKE_LOG", Beside(".log").string());
  return Run(arguments, all);
}

std::string Workplace::TakeLog() const {
  std::string log = ReadFile(Beside(".log"));
  fs::remove(Beside(".log"));
  return log;
}

Outcome Workplace::RunReal(const std::vector<std::string>& arguments,
                           const std::map<std::string, std::string>& variables) const {
  std::map<std::string, std::string> all = variables;
  all["HDI_MODULE"] = HDI_DRIVER_PATH;
  all["HDI_USER_DIR"] = Path("user").string();
  return Run(arguments, all);
}

Outcome Workplace::Run(const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& variables) const {
  const fs::path out = Beside(".out");
  const fs::path err = Beside(".err");
  const pid_t child = fork();
  if (child == 0) {
    for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
    std::vector<std::string> words = arguments;
    words.insert(words.begin(), HDI_HDIPLOT_PATH);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    Redirect("/dev/null", STDIN_FILENO, O_RDONLY);
    Redirect(out, STDOUT_FILENO, O_CREAT | O_TRUNC | O_WRONLY);
    Redirect(err, STDERR_FILENO, O_CREAT | O_TRUNC | O_WRONLY);
    if (chdir(directory_.c_str()) == 0) execv(HDI_HDIPLOT_PATH, pointers.data());
    _exit(127);
  }
  int state = 0;
  waitpid(child, &state, 0);
  Outcome outcome{WIFEXITED(state) ? WEXITSTATUS(state) : -1, ReadFile(out), ReadFile(err)};
  fs::remove(out);
  fs::remove(err);
  return outcome;
}

}  // namespace command
