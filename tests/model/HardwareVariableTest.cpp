// To be written.
