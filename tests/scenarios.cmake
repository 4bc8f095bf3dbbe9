# One CTest test for each scenario folder.
