// analysis tests
