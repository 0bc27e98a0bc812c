// Stands in for a folder that has no source yet.
