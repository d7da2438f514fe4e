palm
-5
12 10
