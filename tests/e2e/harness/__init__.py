"""What the whole-program tests stand on: a desktop, a vendor, a program under test and eyes on its window."""
