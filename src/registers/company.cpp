// company
