#include "path/plain_path_finder.h"

#include <cstdio>
#include <iterator>
#include <list>
#include <sstream>

// Written to be checked by eye against the rules, not to be quick; it shares nothing with the library.
namespace plain {
namespace {

// ----- elements

void dumpPath(std::ostream &out, const Path &path) {
  for (const Element &element : path) {
    if (element.type == 0) {
      out << "\tMoveToPoint:  (" << element.x << ", " << element.y << ")" << std::endl;
    } else if (element.type == 1) {
      out << "\tAddLineToPoint:  (" << element.x << ", " << element.y << ")" << std::endl;
    } else if (element.type == 4) {
      out << "\tCloseSubpath" << std::endl;
    } else {
      out << "UNRECOGNIZED TYPE" << std::endl;
    }
  }
}

template <class List>
void dumpPaths(std::ostream &out, const List &paths) {
  int count = 0;
  for (const Path &path : paths) {
    out << "Path " << count << std::endl;
    dumpPath(out, path);
    ++count;
  }
}

bool adjacent(const Element &p, const Element &q) {
  const int dx = static_cast<int>(p.x - q.x);
  if (dx < -1 || dx > 1) return false;
  const int dy = static_cast<int>(p.y - q.y);
  if (dy < -1 || dy > 1) return false;
  return true;
}

// ----- assembly

bool closeIfEndsTouch(Path &path) {
  if (path.size() < 2) return false;
  if (!adjacent(path[0], path[path.size() - 1])) return false;
  path[path.size() - 1] = Element{4, 0.0F, 0.0F};
  return true;
}

void reversePath(Path &path) {
  Path turned;
  for (std::size_t i = path.size(); i > 0; --i) turned.push_back(path[i - 1]);
  const int firstType = turned[0].type;
  turned[0].type = turned[turned.size() - 1].type;
  turned[turned.size() - 1].type = firstType;
  path = turned;
}

void combine(Path &a, Path b, bool prepend, bool reverse) {
  if (reverse) reversePath(b);
  Path joined;
  if (prepend) {
    a[0].type = 1;
    for (const Element &element : b) joined.push_back(element);
    for (const Element &element : a) joined.push_back(element);
  } else {
    b[0].type = 1;
    for (const Element &element : a) joined.push_back(element);
    for (const Element &element : b) joined.push_back(element);
  }
  a = joined;
}

bool isClosed(const Path &path) { return path.size() > 1 && path[path.size() - 1].type == 4; }

void shut(Path &path) {
  const int n = static_cast<int>(path.size());
  if (n == 1) {
    path.push_back(Element{1, path[0].x, path[0].y});
    path.push_back(Element{4, 0.0F, 0.0F});
    return;
  }
  for (int i = n - 2; i >= 0; --i) {
    if (i > 0) {
      path.push_back(Element(path[static_cast<std::size_t>(i)]));
    } else {
      path.push_back(Element{4, 0.0F, 0.0F});
    }
  }
}

// One pass over all pairs; returns whether anything was merged.
bool mergePass(std::list<Path> &open, std::list<Path> &closed, Trace &trace) {
  bool merged = false;
  for (auto a = open.begin(); a != open.end();) {
    const Element first = a->front();
    const Element last = a->back();
    bool moved = false;
    for (auto b = std::next(a); b != open.end();) {
      if (adjacent(first, b->front())) {
        combine(*a, *b, true, true);
      } else if (adjacent(first, b->back())) {
        combine(*a, *b, true, false);
      } else if (adjacent(last, b->front())) {
        combine(*a, *b, false, false);
      } else if (adjacent(last, b->back())) {
        combine(*a, *b, false, true);
      } else {
        ++b;
        continue;
      }
      merged = true;
      ++trace.merges;
      b = open.erase(b);
      if (closeIfEndsTouch(*a)) {
        closed.push_back(*a);
        a = open.erase(a);
        moved = true;
        ++trace.closedByMerging;
        break;
      }
    }
    if (!moved) ++a;
  }
  return merged;
}

void concatenate(std::list<Path> &open, std::ostream &out, Trace &trace) {
  std::list<Path> closed;
  for (auto it = open.begin(); it != open.end();) {
    if (isClosed(*it)) {
      closed.push_back(*it);
      it = open.erase(it);
    } else {
      ++it;
    }
  }
  out << std::endl << "Closed Paths:" << std::endl;
  dumpPaths(out, closed);
  out << std::endl << "Open Paths:" << std::endl;
  dumpPaths(out, open);
  while (mergePass(open, closed, trace)) {
  }
  for (Path &path : open) shut(path);
  open.splice(open.begin(), closed);
}

// ----- contour following

struct Image {
  const std::uint8_t *buffer;
  int width, height;
  float threshold;
};

// The neighbour that an identifier names, by the table; false where there is none.
bool neighbour(const Image &image, int row, int column, int identifier, int &toRow, int &toColumn) {
  switch (identifier % 8) {
    case 0:  // west
      if (!(column >= 1)) return false;
      toRow = row, toColumn = column - 1;
      return true;
    case 1:  // north-west
      if (!(column > 0 && row > 0)) return false;
      toRow = row - 1, toColumn = column - 1;
      return true;
    case 2:  // north
      if (!(row >= 1)) return false;
      toRow = row - 1, toColumn = column;
      return true;
    case 3:  // north-east
      if (!(column < image.width - 1 && row > 0)) return false;
      toRow = row - 1, toColumn = column + 1;
      return true;
    case 4:  // east
      if (!(column < image.width - 1)) return false;
      toRow = row, toColumn = column + 1;
      return true;
    case 5:  // south-east
      if (!(column < image.width - 1 && row < image.height - 1)) return false;
      toRow = row + 1, toColumn = column + 1;
      return true;
    case 6:  // south
      if (!(row < image.height - 1)) return false;
      toRow = row + 1, toColumn = column;
      return true;
    case 7:  // south-west
      if (!(column > 0 && row < image.height - 1)) return false;
      toRow = row + 1, toColumn = column - 1;
      return true;
    default:
      return false;
  }
}

bool background(const Image &image, int row, int column) {
  const float alpha = image.buffer[4 * (image.width * row + column)];
  return image.threshold >= alpha / 255.0F;
}

bool floating(const Image &image, int row, int column) {
  for (int identifier = 0; identifier < 8; ++identifier) {
    int r = 0;
    int c = 0;
    if (!neighbour(image, row, column, identifier, r, c)) return false;
    if (background(image, r, c)) return false;
  }
  return true;
}

enum Direction { none, horizontal, vertical, rising, falling };

Direction directionOf(int identifier) {
  const Direction table[] = {horizontal, falling, vertical, rising};
  const int remainder = identifier % 8;
  return remainder < 0 ? none : table[remainder % 4];
}

void print(std::ostream &out, const char *format, int column, int row) {
  char line[100];
  std::snprintf(line, sizeof line, format, column, row);
  out << line;
}

void addLine(Path &path, const Image &image, int row, int column, std::ostream &out) {
  path.push_back(Element{1, static_cast<float>(column), static_cast<float>(image.height - row - 1)});
  print(out, "adding line (%d, %d)\n", column, row);
}

void follow(Path &path, const Image &image, std::vector<bool> &visited, int startRow, int startColumn,
            std::ostream &out) {
  int row = startRow;
  int column = startColumn;
  bool hasLast = false;
  int lastRow = 0;
  int lastColumn = 0;
  Direction direction = none;
  int identifier = 1;
  int tries = 0;
  while (tries <= 7) {
    int r = 0;
    int c = 0;
    if (neighbour(image, row, column, identifier, r, c)) {
      if (direction != none && r == startRow && c == startColumn) {
        if (!hasLast) return;
        out << "closing subpath\n";
        path.push_back(Element{4, 0.0F, 0.0F});
        return;
      }
      const auto index = static_cast<std::size_t>(image.width * r + c);
      if (!visited[index]) {
        visited[index] = true;
        if (!background(image, r, c) && !floating(image, r, c)) {
          const Direction d = directionOf(identifier);
          if (direction != none && d != direction) addLine(path, image, lastRow, lastColumn, out);
          direction = d;
          hasLast = true;
          lastRow = row = r;
          lastColumn = column = c;
          tries = 0;
          identifier -= 4;
        }
      }
    }
    ++tries;
    ++identifier;
  }
  if (hasLast) addLine(path, image, lastRow, lastColumn, out);
}

std::list<Path> findPaths(const Image &image, std::ostream &out) {
  std::list<Path> paths;
  std::vector<bool> visited(static_cast<std::size_t>(image.width * image.height), false);
  for (int row = 0; row < image.height; ++row) {
    for (int column = 0; column < image.width; ++column) {
      const auto index = static_cast<std::size_t>(image.width * row + column);
      if (visited[index]) continue;
      visited[index] = true;
      if (background(image, row, column) || floating(image, row, column)) continue;
      print(out, "starting subpath (%d, %d)\n", column, row);
      const float y = static_cast<float>(image.height - row - 1);
      paths.push_back(Path{Element{0, static_cast<float>(column), y}});
      follow(paths.back(), image, visited, row, column, out);
    }
  }
  return paths;
}

}  // namespace

Trace trace(const std::uint8_t *buffer, int width, int height, float alphaThreshold) {
  Trace result;
  std::ostringstream out;
  std::list<Path> paths = findPaths(Image{buffer, width, height, alphaThreshold}, out);
  dumpPaths(out, paths);
  concatenate(paths, out, result);
  out << std::endl << std::endl;
  dumpPaths(out, paths);
  result.paths.assign(paths.begin(), paths.end());
  result.text = out.str();
  return result;
}

Trace assemble(const Paths &paths) {
  Trace result;
  std::ostringstream out;
  std::list<Path> open(paths.begin(), paths.end());
  concatenate(open, out, result);
  result.paths.assign(open.begin(), open.end());
  result.text = out.str();
  return result;
}

}  // namespace plain
