#include "list_files.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace orvanta::headset {

namespace {

struct Options {
  bool all = false;
  bool almostAll = false;
  bool longLines = false;
  bool recursive = false;
  bool foldersThemselves = false;
  bool human = false;
};

struct Item {
  std::string name;
  struct stat info {};
  std::string target;
};

int g_exitCode = 0;

void complain(const std::string& path) {
  std::fprintf(stderr, "ls: %s: %s\n", path.c_str(), std::strerror(errno));
  g_exitCode = 1;
}

bool look(const std::string& path, const std::string& name, bool followLinks, Item& item) {
  item.name = name;
  if ((followLinks ? ::stat(path.c_str(), &item.info) : ::lstat(path.c_str(), &item.info)) != 0) return false;
  if (S_ISLNK(item.info.st_mode)) {
    std::array<char, 4096> target{};
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length > 0) item.target.assign(target.data(), static_cast<std::size_t>(length));
  }
  return true;
}

std::string modeText(mode_t mode) {
  std::string text = "?rwxrwxrwx";
  constexpr std::array<std::pair<mode_t, char>, 7> kinds = {{{S_IFDIR, 'd'},
                                                             {S_IFREG, '-'},
                                                             {S_IFLNK, 'l'},
                                                             {S_IFCHR, 'c'},
                                                             {S_IFBLK, 'b'},
                                                             {S_IFIFO, 'p'},
                                                             {S_IFSOCK, 's'}}};
  for (const auto& [kind, letter] : kinds) {
    if ((mode & S_IFMT) == kind) text[0] = letter;
  }
  for (unsigned bit = 0; bit < 9; ++bit) {
    if ((mode & (0400U >> bit)) == 0) text[1 + bit] = '-';
  }
  return text;
}

std::string sizeText(const Item& item, bool human) {
  auto size = static_cast<double>(item.info.st_size);
  if (!human || size < 1024) return std::to_string(item.info.st_size);
  std::size_t unit = 0;
  while (size >= 1000 && unit < 5) {
    size /= 1024;
    ++unit;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), size < 10 ? "%.1f%c" : "%.0f%c", size, " KMGTP"[unit]);
  return text.data();
}

const char* owner(const std::string& folder, unsigned id) {
  if (folder.find("/sdcard") == 0 || folder.find("/storage/emulated") == 0) return "sdcard_rw";
  return id == 2000 ? "shell" : "root";
}

void printItems(const std::string& folder, const std::vector<Item>& items, const Options& options) {
  std::array<std::size_t, 4> widths{};
  const auto cells = [&](const Item& item) {
    const bool shared = std::strcmp(owner(folder, item.info.st_uid), "sdcard_rw") == 0;
    return std::array<std::string, 4>{std::to_string(item.info.st_nlink),
                                      shared ? "root" : owner(folder, item.info.st_uid),
                                      owner(folder, item.info.st_gid), sizeText(item, options.human)};
  };
  if (options.longLines) {
    for (const Item& item : items) {
      const auto row = cells(item);
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
  }
  for (const Item& item : items) {
    if (options.longLines) {
      const auto row = cells(item);
      std::array<char, 32> time{};
      const tm* local = std::localtime(&item.info.st_mtime);
      std::strftime(time.data(), time.size(), "%Y-%m-%d %H:%M", local);
      std::printf("%s %*s %-*s %-*s %*s %s ", modeText(item.info.st_mode).c_str(),
                  static_cast<int>(widths[0]), row[0].c_str(), static_cast<int>(widths[1]), row[1].c_str(),
                  static_cast<int>(widths[2]), row[2].c_str(), static_cast<int>(widths[3]), row[3].c_str(),
                  time.data());
    }
    std::fputs(item.name.c_str(), stdout);
    if (options.longLines && !item.target.empty()) std::printf(" -> %s", item.target.c_str());
    std::putchar('\n');
  }
}

void listFolder(const std::string& path, const Options& options, bool withHeading, bool& first) {
  DIR* folder = ::opendir(path.c_str());
  if (folder == nullptr) return complain(path);
  std::vector<Item> items;
  long blocks = 0;
  while (const dirent* entry = ::readdir(folder)) {
    const std::string name = entry->d_name;
    const bool isDots = name == "." || name == "..";
    if (name.front() == '.' && !options.all && (!options.almostAll || isDots)) continue;
    Item item;
    if (!look(path + (path.back() == '/' ? "" : "/") + name, name, false, item)) continue;
    blocks += item.info.st_blocks / 2;
    items.push_back(item);
  }
  ::closedir(folder);
  std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.name < b.name; });
  if (withHeading) std::printf("%s%s:\n", first ? "" : "\n", path.c_str());
  first = false;
  if (options.longLines) std::printf("total %ld\n", blocks);
  printItems(path, items, options);
  if (!options.recursive) return;
  for (const Item& item : items) {
    if (!S_ISDIR(item.info.st_mode) || item.name == "." || item.name == "..") continue;
    listFolder(path + (path.back() == '/' ? "" : "/") + item.name, options, true, first);
  }
}

}  // namespace

int listFiles(int argc, char** argv) {
  Options options;
  std::vector<std::string> paths;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.size() < 2 || word.front() != '-') {
      paths.push_back(word);
      continue;
    }
    for (const char letter : word.substr(1)) {
      options.all |= letter == 'a';
      options.almostAll |= letter == 'A';
      options.longLines |= letter == 'l';
      options.recursive |= letter == 'R';
      options.foldersThemselves |= letter == 'd';
      options.human |= letter == 'h';
      if (std::strchr("aAlRdh1", letter) == nullptr) {
        // A rarer option: left to the shell's own ls.
        ::execv("/system/bin/busybox", argv);
      }
    }
  }
  if (paths.empty()) paths.emplace_back(".");

  std::vector<Item> files;
  std::vector<std::string> folders;
  for (const std::string& path : paths) {
    Item item;
    // A link on the command line is followed except with -l, so that "ls /sdcard" lists its content.
    if (!look(path, path, !options.longLines || path.back() == '/', item)) {
      complain(path);
    } else if (S_ISDIR(item.info.st_mode) && !options.foldersThemselves) {
      folders.push_back(path);
    } else {
      files.push_back(item);
    }
  }
  printItems({}, files, options);
  bool first = files.empty();
  for (const std::string& folder : folders) {
    listFolder(folder, options, options.recursive || paths.size() > 1, first);
  }
  return g_exitCode;
}

}  // namespace orvanta::headset
