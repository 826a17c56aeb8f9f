#pragma once

// The rows of the table, by what they are about. Each function measures and prints its own.

namespace brisk::bench {

// Before all others: they look at the most memory that the process ever had.
void printMemoryRows();

void printTitleRows();
void printSettingsRows();
void printTickRows();
void printPatternRows();

// Many titles in one pass; on Windows only, for on the simulated one its calls would be most of it.
void printBulkRows();

// How the cost grows with the size.
void printGrowthRows();

} // namespace brisk::bench
