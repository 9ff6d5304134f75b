// inputs
