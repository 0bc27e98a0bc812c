// Requests for memory that fail when a test says so. Replaces the operators of the whole executable.
#pragma once

// How many more requests of this thread are granted before the others fail; below zero: all are.
void grantRequests(long count) noexcept;

// Whether one has failed since the last call of grantRequests.
bool hasRequestFailed() noexcept;
