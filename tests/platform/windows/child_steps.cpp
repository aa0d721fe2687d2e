#include "platform/child_steps.h"

#include <windows.h>

#include <array>

namespace steps {

void say(const std::string& text, bool toError) {
  const HANDLE output = ::GetStdHandle(toError ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  for (size_t done = 0; done < text.size();) {
    DWORD count = 0;
    if (!::WriteFile(output, text.data() + done, static_cast<DWORD>(text.size() - done), &count, nullptr)) {
      ::ExitProcess(1);
    }
    done += count;
  }
}

void sleepFor(unsigned milliseconds) {
  ::Sleep(milliseconds);
}

void hang() {
  ::SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);
  ::Sleep(60'000);
  ::ExitProcess(1);
}

std::string ownNumber() {
  return std::to_string(::GetCurrentProcessId()) + "\n";
}

void startAgain(const Arguments& arguments, bool outside) {
  std::array<char, 1024> program = {};
  ::GetModuleFileNameA(nullptr, program.data(), static_cast<DWORD>(program.size()));
  std::string line = '"' + std::string(program.data()) + '"';
  for (const std::string& argument : arguments) line += ' ' + argument;
  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = ::GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
  const auto start = [&](DWORD flags) {
    PROCESS_INFORMATION information = {};
    if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &startup,
                          &information)) {
      return false;
    }
    ::CloseHandle(information.hThread);
    ::CloseHandle(information.hProcess);
    return true;
  };
  if (!outside || !start(CREATE_BREAKAWAY_FROM_JOB)) start(0);
}

void closeOutput() {
  ::CloseHandle(::GetStdHandle(STD_OUTPUT_HANDLE));  // which is that of the errors too
}

void state() {
  STARTUPINFOA startup = {};
  ::GetStartupInfoA(&startup);
  say("line " + std::string(::GetCommandLineA()) + "\n");
  say("input " + std::to_string(::GetStdHandle(STD_INPUT_HANDLE) != nullptr));
  say("\nflags " + std::to_string(startup.dwFlags) + "\nshow " + std::to_string(startup.wShowWindow) + "\n");
}

}  // namespace steps
