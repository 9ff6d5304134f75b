// tests
