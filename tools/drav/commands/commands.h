// The commands of the tool. A new one is a new file beside this one and a new row of the table.
#pragma once

#include <CLI/CLI.hpp>

// Adds the command to the parser. What it does is its callback, which sets `exitStatus`, or throws
// UsageError.
using AddCommand = void (*)(CLI::App &tool, int &exitStatus);

void addInfo(CLI::App &tool, int &exitStatus);
void addConvert(CLI::App &tool, int &exitStatus);
void addCrop(CLI::App &tool, int &exitStatus);
void addScale(CLI::App &tool, int &exitStatus);
void addFlip(CLI::App &tool, int &exitStatus);
void addGray(CLI::App &tool, int &exitStatus);
void addInvert(CLI::App &tool, int &exitStatus);
void addAlpha(CLI::App &tool, int &exitStatus);
void addMask(CLI::App &tool, int &exitStatus);
void addComposite(CLI::App &tool, int &exitStatus);
void addTile(CLI::App &tool, int &exitStatus);
void addGallery(CLI::App &tool, int &exitStatus);
void addTrace(CLI::App &tool, int &exitStatus);
void addRecolor(CLI::App &tool, int &exitStatus);
void addFormats(CLI::App &tool, int &exitStatus);

// In the order in which --help lists them.
inline constexpr AddCommand kCommands[] = {addInfo, addConvert, addCrop,  addScale,   addFlip,
                                           addGray, addInvert,  addAlpha, addMask,    addComposite,
                                           addTile, addGallery, addTrace, addRecolor, addFormats};
