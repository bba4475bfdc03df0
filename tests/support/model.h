// The lines of the model that have a handler.
#pragma once

#include <ostream>
#include <string>
#include <vector>

struct ModelLine {
    std::string path, handler;
    std::size_t numbers = 0;  // entries of locate that the path fills
    bool writable = false;
    bool is_object = false;
    bool apply_only = false;
    bool secret = false;
};

void PrintTo(const ModelLine& line, std::ostream* stream);

// Each handler once for each count of numbers, though several paths may lead to it.
std::vector<ModelLine> model_lines();
